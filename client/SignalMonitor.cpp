#include "SignalMonitor.h"

#include "Output.h"
#include "Values.h"
#include <QDateTime>
#include <QDBusConnectionInterface>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

namespace {

const QString daemonCame = QStringLiteral("daemonCame");
const QString daemonWent = QStringLiteral("daemonWent");

} // namespace

SignalMonitor::SignalMonitor(const QDBusConnection &connection, const NetworkNames &names, Form form,
                             QObject *parent)
    : QObject(parent)
    , m_signals(connection)
    , m_presence(daemonName(), connection)
    , m_names(names)
    , m_form(form)
{
    connect(&m_signals, &DaemonSignals::received, this, &SignalMonitor::tell);
    connect(&m_presence, &QDBusServiceWatcher::serviceRegistered, this, [this] { tell(daemonCame, {}); });
    connect(&m_presence, &QDBusServiceWatcher::serviceUnregistered, this, [this] { tell(daemonWent, {}); });
    tell(connection.interface()->isServiceRegistered(daemonName()) ? daemonCame : daemonWent, {});
}

void SignalMonitor::tell(const QString &event, const QVariantList &arguments)
{
    const QDateTime now = QDateTime::currentDateTime();
    if (m_form == Form::Text) {
        printLine(now.toString(QStringLiteral("HH:mm:ss ")) + signalText(event, arguments, m_names));
        return;
    }
    const QJsonObject object{{QStringLiteral("time"), now.toString(Qt::ISODateWithMs)},
                             {QStringLiteral("event"), event},
                             {QStringLiteral("arguments"), valueJson(arguments)}};
    printLine(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
}

QString signalText(const QString &name, const QVariantList &arguments, const NetworkNames &names)
{
    static const QMap<QString, QString> networkEvents = {
        {QStringLiteral("networkRegistered"), QStringLiteral("registered")},
        {QStringLiteral("networkForgot"), QStringLiteral("forgotten")},
        {QStringLiteral("networkConnected"), QStringLiteral("connected")},
        {QStringLiteral("networkDisconnected"), QStringLiteral("disconnected")}};
    const QString text = arguments.value(0).toString();
    if (networkEvents.contains(name)) {
        return QStringLiteral("%1: %2").arg(networkEvents.value(name), names.nameOf(text));
    }
    if (name == QStringLiteral("powerChanged")) {
        return arguments.value(0).toBool() ? QStringLiteral("Wi-Fi is on") : QStringLiteral("Wi-Fi is off");
    }
    if (name == QStringLiteral("regionChanged")) {
        const QString locked =
            arguments.value(1).toBool() ? QStringLiteral("locked") : QStringLiteral("not locked");
        return QStringLiteral("region: %1, %2").arg(text, locked);
    }
    if (name == daemonCame) {
        return QStringLiteral("the network daemon is there");
    }
    if (name == daemonWent) {
        return QStringLiteral("the network daemon is not there");
    }
    return QStringLiteral("%1: %2").arg(name, text);
}
