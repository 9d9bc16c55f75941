#include "ConnmanConversation.h"

#include "EventWait.h"
#include "PlainValue.h"
#include "Text.h"
#include <QDBusVariant>
#include <utility>

namespace test_support {

namespace {

const QString connman = "net.connman"_s;
const QString servicePath = "/net/connman/service/"_s;
const QString technologyPath = "/net/connman/technology/"_s;
const QString serviceInterface = "net.connman.Service"_s;
const QString technologyInterface = "net.connman.Technology"_s;
const QString managerInterface = "net.connman.Manager"_s;

const QStringList repeatedAtWill{"Domains"_s, "Ethernet"_s, "Nameservers"_s, "Strength"_s, "Timeservers"_s};

/// Longer than ConnMan keeps a change of its list to itself (100 ms), and than anything here takes.
constexpr int silenceMs = 1500;

QString bareText(const QVariant &value)
{
    QStringList texts;
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::UChar:
        return QString::number(value.toUInt()); // a byte is a number on the bus, for QString a letter
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
            texts << entry.key() + ": "_s + bareText(entry.value());
        }
        return "{%1}"_s.arg(texts.join(", "_s));
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        for (const QVariant &element : value.toList()) {
            texts << bareText(element);
        }
        return "[%1]"_s.arg(texts.join(", "_s));
    default:
        return value.toString();
    }
}

/// "wifi_<hardware address>_<SSID in hexadecimal>_managed_<security>", or a cable.
QString nameOfService(const QString &identifier)
{
    const QStringList parts = identifier.split(QLatin1Char('_'));
    return parts.first() == "wifi"_s ? QString::fromUtf8(QByteArray::fromHex(parts.value(2).toLatin1()))
                                     : "cable"_s;
}

QString nameOf(const QString &path)
{
    if (path.startsWith(servicePath)) {
        return nameOfService(path.mid(servicePath.size()));
    }
    return path.startsWith(technologyPath) ? path.mid(technologyPath.size()) : "manager"_s;
}

} // namespace

ConnmanConversation::ConnmanConversation(QDBusConnection connection, IsOfInterest isOfInterest)
    : m_connection(std::move(connection))
    , m_isOfInterest(std::move(isOfInterest))
{
    const QString anyPath;
    const QString anySignal;
    for (const QString &interface : {serviceInterface, technologyInterface, managerInterface}) {
        m_connection.connect(connman, anyPath, interface, anySignal, this, SLOT(hear(QDBusMessage)));
    }
}

QString ConnmanConversation::askService(const QString &identifier, const char *method,
                                        const QVariantList &arguments) const
{
    return ask(servicePath + identifier, serviceInterface, method, arguments);
}

QString ConnmanConversation::askTechnology(const QString &type, const char *method,
                                           const QVariantList &arguments) const
{
    return ask(technologyPath + type, technologyInterface, method, arguments);
}

QString ConnmanConversation::askManager(const char *method, const QVariantList &arguments) const
{
    return ask("/"_s, managerInterface, method, arguments);
}

QString ConnmanConversation::ask(const QString &path, const QString &interface, const char *method,
                                 const QVariantList &arguments) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(connman, path, interface, QString::fromLatin1(method));
    call.setArguments(arguments);
    const QDBusMessage reply = m_connection.call(call);
    if (reply.type() == QDBusMessage::ErrorMessage) {
        return "%1: %2"_s.arg(reply.errorName(), reply.errorMessage());
    }
    QStringList values;
    for (const QVariant &value : reply.arguments()) {
        values << bareText(plain(value));
    }
    return values.join(", "_s);
}

QStringList ConnmanConversation::heard(int lines)
{
    waitUntil([&] { return m_heard.size() >= lines; });
    waitForSilence();
    return std::exchange(m_heard, {});
}

void ConnmanConversation::waitForSilence()
{
    int before = -1;
    while (before != m_heard.size()) {
        before = m_heard.size();
        waitUntil([&] { return m_heard.size() > before; }, silenceMs);
    }
}

void ConnmanConversation::hear(const QDBusMessage &signal)
{
    const QVariantList arguments = signal.arguments();
    const QString property = arguments.value(0).toString();
    if (signal.member() != "PropertyChanged"_s) {
        keep(signal.member());
    } else if (!repeatedAtWill.contains(property)) {
        keep("%1 %2 %3"_s.arg(nameOf(signal.path()), property, bareText(plain(arguments.value(1)))));
    }
}

void ConnmanConversation::keep(const QString &line)
{
    if (m_isOfInterest(line)) {
        m_heard << line;
    }
}

QVariantList propertyAndValue(const char *property, const QVariant &value)
{
    return {QString::fromLatin1(property), QVariant::fromValue(QDBusVariant(value))};
}

} // namespace test_support
