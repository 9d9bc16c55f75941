#include "Conversation.h"

#include "EventWait.h"
#include "Text.h"
#include <QRegularExpression>

using test_support::propertyAndValue;

namespace {

const QString connectionName = "conversation"_s;
const QString technology = "ethernet"_s;

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
    , m_connman(m_connection)
{
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
    return withoutNumberOfLease(m_connman.askService(m_surroundings->service(), method, arguments));
}

QString Conversation::askTechnology(const char *method, const QVariantList &arguments)
{
    return m_connman.askTechnology(technology, method, arguments);
}

QString Conversation::askManager(const char *method, const QVariantList &arguments)
{
    return m_connman.askManager(method, arguments);
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
    QStringList heard = m_connman.heard(lines);
    for (QString &line : heard) {
        line = withoutNumberOfLease(line);
    }
    return heard;
}
