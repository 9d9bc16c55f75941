#include "Conversation.h"

#include "EventWait.h"
#include "PlainValue.h"
#include "Text.h"
#include <QDBusVariant>
#include <QRegularExpression>
#include <utility>

using test_support::plain;

namespace {

const QString connectionName = "conversation"_s;
const QString connman = "net.connman"_s;
const QString technologyPath = "/net/connman/technology/ethernet"_s;
const QString serviceInterface = "net.connman.Service"_s;
const QString technologyInterface = "net.connman.Technology"_s;
const QString managerInterface = "net.connman.Manager"_s;

/// Longer than ConnMan keeps a change of its list to itself (100 ms), and than anything here takes.
constexpr int silenceMs = 1500;

QString textOf(const QVariant &value)
{
    QStringList texts;
    switch (value.type()) {
    case QVariant::Map: {
        const QVariantMap map = value.toMap();
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
            texts << entry.key() + ": "_s + textOf(entry.value());
        }
        return "{%1}"_s.arg(texts.join(", "_s));
    }
    case QVariant::List:
    case QVariant::StringList:
        for (const QVariant &element : value.toList()) {
            texts << textOf(element);
        }
        return "[%1]"_s.arg(texts.join(", "_s));
    default:
        return value.toString();
    }
}

QVariantList propertyAndValue(const char *property, const QVariant &value)
{
    return {QString::fromLatin1(property), QVariant::fromValue(QDBusVariant(value))};
}

/// The DHCP server gives one of ten.
QString withoutNumberOfLease(QString text)
{
    static const QRegularExpression leased("198\\.51\\.100\\.(5[0-9]|60)"_s);
    return text.replace(leased, "LEASE"_s);
}

} // namespace

Conversation::Conversation()
    : m_connection(QDBusConnection::connectToBus(m_bus.address(), connectionName))
    , m_surroundings(std::make_unique<Surroundings>(m_bus.address(), m_connection))
{
    const QString anyPath;
    const QString anySignal;
    for (const QString &interface : {serviceInterface, technologyInterface, managerInterface}) {
        m_connection.connect(connman, anyPath, interface, anySignal, this, SLOT(hear(QDBusMessage)));
    }
}

Conversation::~Conversation()
{
    m_surroundings.reset();
    QDBusConnection::disconnectFromBus(connectionName);
}

bool Conversation::begin()
{
    m_surroundings->startDhcpServer();
    m_surroundings->plugCable();
    m_surroundings->startConnman();
    const bool hasLease = test_support::waitUntil(
        [this] { return m_surroundings->connmanProperties().value("State"_s) == "ready"_s; });
    heard();
    return hasLease;
}

QString Conversation::askCable(const char *method, const QVariantList &arguments)
{
    return ask("/net/connman/service/"_s + m_surroundings->service(), serviceInterface, method, arguments);
}

QString Conversation::askTechnology(const char *method, const QVariantList &arguments)
{
    return ask(technologyPath, technologyInterface, method, arguments);
}

QString Conversation::askManager(const char *method, const QVariantList &arguments)
{
    return ask("/"_s, managerInterface, method, arguments);
}

QString Conversation::setOfCable(const char *property, const QVariant &value)
{
    return askCable("SetProperty", propertyAndValue(property, value));
}

QString Conversation::setOfTechnology(const char *property, const QVariant &value)
{
    return askTechnology("SetProperty", propertyAndValue(property, value));
}

QStringList Conversation::heard(int lines)
{
    test_support::waitUntil([&] { return m_heard.size() >= lines; });
    waitForSilence();
    return std::exchange(m_heard, {});
}

void Conversation::waitForSilence()
{
    int before = -1;
    while (before != m_heard.size()) {
        before = m_heard.size();
        test_support::waitUntil([&] { return m_heard.size() > before; }, silenceMs);
    }
}

void Conversation::hear(const QDBusMessage &signal)
{
    static const QStringList ignored{"Domains"_s, "Ethernet"_s, "Nameservers"_s, "Timeservers"_s};
    const QVariantList arguments = signal.arguments();
    if (signal.member() != "PropertyChanged"_s) {
        m_heard << signal.member();
    } else if (!ignored.contains(arguments.value(0).toString())) {
        m_heard << withoutNumberOfLease("%1 %2 %3"_s.arg(nameOf(signal.path()), arguments.value(0).toString(),
                                                         textOf(plain(arguments.value(1)))));
    }
}

QString Conversation::ask(const QString &path, const QString &interface, const char *method,
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
        values << textOf(plain(value));
    }
    return withoutNumberOfLease(values.join(", "_s));
}

QString Conversation::nameOf(const QString &path) const
{
    if (path == technologyPath) {
        return "technology"_s;
    }
    return path == "/"_s ? "manager"_s : "cable"_s;
}
