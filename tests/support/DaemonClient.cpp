#include "DaemonClient.h"

#include "PlainValue.h"
#include "Text.h"
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDebug>
#include <QRegularExpression>
#include <QUuid>

namespace test_support {

namespace {
const QString daemonName = "com.tactora.NetworkManager"_s;
const QString daemonPath = "/"_s;
// Longer than any wait of a test, so that a test fails with its own words, and than any operation of the
// daemon.
constexpr int callTimeoutMs = 6 * eventTimeoutMs;

QString textOf(const QVariant &value);

QString textOf(const QVariantMap &map)
{
    QStringList entries;
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        entries << "\"%1\": %2"_s.arg(entry.key(), textOf(entry.value()));
    }
    return "{%1}"_s.arg(entries.join(", "_s));
}

QString textOf(const QStringList &list)
{
    QStringList entries;
    for (const QString &entry : list) {
        entries << textOf(entry);
    }
    return "[%1]"_s.arg(entries.join(", "_s));
}

QString textOf(const QVariant &packed)
{
    const QVariant value = plain(packed);
    switch (value.type()) {
    case QVariant::String:
        return "\"%1\""_s.arg(value.toString());
    case QVariant::StringList:
        return textOf(value.toStringList());
    case QVariant::Map:
        return textOf(value.toMap());
    default:
        return value.toString();
    }
}

QString textOf(const QVariantList &values)
{
    QStringList texts;
    for (const QVariant &value : values) {
        texts << textOf(value);
    }
    return texts.join(", "_s);
}
} // namespace

DaemonClient::DaemonClient(const QString &busAddress, QObject *parent)
    : QObject(parent)
    , m_connectionName(QUuid::createUuid().toString())
    , m_connection(QDBusConnection::connectToBus(busAddress, m_connectionName))
{
    const QString anySignal;
    m_connection.connect(daemonName, daemonPath, daemonName, anySignal, this, SLOT(onSignal(QDBusMessage)));
}

DaemonClient::~DaemonClient()
{
    // A call without an answer touches its connection when it goes: before that does.
    qDeleteAll(findChildren<QDBusPendingCallWatcher *>());
    QDBusConnection::disconnectFromBus(m_connectionName);
}

bool DaemonClient::waitForName(int timeoutMs)
{
    const QDBusServiceWatcher watcher(daemonName, m_connection, QDBusServiceWatcher::WatchForRegistration);
    return waitUntil([this] { return m_connection.interface()->isServiceRegistered(daemonName).value(); },
                     timeoutMs);
}

QDBusMessage DaemonClient::message(const QString &method, const QVariantList &arguments) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(daemonName, daemonPath, daemonName, method);
    call.setArguments(arguments);
    return call;
}

QDBusPendingCallWatcher *DaemonClient::sendCall(const QString &method, const QVariantList &arguments)
{
    auto *watcher =
        new QDBusPendingCallWatcher(m_connection.asyncCall(message(method, arguments), callTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, method](QDBusPendingCallWatcher *finished) {
                const QDBusMessage reply = finished->reply();
                const bool isError = reply.type() == QDBusMessage::ErrorMessage;
                m_record << "%1 -> %2"_s.arg(method, isError ? reply.errorName() : textOf(reply.arguments()));
                finished->deleteLater();
            });
    return watcher;
}

QDBusMessage DaemonClient::waitForReply(const QDBusPendingCallWatcher *watcher)
{
    // The call's only watcher: a second one is told nothing if the reply comes before it is made.
    const QDBusPendingCall call(static_cast<const QDBusPendingCall &>(*watcher));
    const QObject thisWait;
    bool finished = false;
    connect(watcher, &QDBusPendingCallWatcher::finished, &thisWait, [&finished] { finished = true; });
    waitUntil([&finished] { return finished; }, callTimeoutMs);
    return call.reply();
}

QDBusMessage DaemonClient::callForReply(const QString &method, const QVariantList &arguments)
{
    // The record was connected to the watcher first: when the reply is here, it is in the record.
    return waitForReply(sendCall(method, arguments));
}

void DaemonClient::settle()
{
    const QDBusPendingCallWatcher watcher(
        m_connection.asyncCall(message("getWifiRegion"_s, {}), callTimeoutMs));
    waitForReply(&watcher);
}

QVariant DaemonClient::valueOfReply(const char *method, const QVariantList &arguments)
{
    const QDBusMessage reply = callForReply(QString::fromLatin1(method), arguments);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 1) {
        qCritical() << "Not an ordinary reply with one value:" << reply;
        return {};
    }
    return plain(reply.arguments().constFirst());
}

QStringList DaemonClient::heard() const
{
    static const QRegularExpression signal("^\\w+\\("_s);
    return m_record.filter(signal);
}

bool DaemonClient::waitFor(const QString &entry, int times) const
{
    return waitUntil([&] { return m_record.count(entry) >= times; });
}

void DaemonClient::onSignal(const QDBusMessage &message)
{
    m_record << "%1(%2)"_s.arg(message.member(), textOf(message.arguments()));
}

} // namespace test_support
