#include "Cable.h"

#include "EventWait.h"
#include "TestDevice.h"

#include <QDBusArgument>

namespace soak {

namespace {
const QString connmanName = QStringLiteral("net.connman");
const QString servicePath = QStringLiteral("/net/connman/service/ethernet_020000000100_cable");
} // namespace

Cable::Cable(test_support::TestDevice &device)
    : m_device(device)
{
    QDBusConnection bus = device.client.connection();
    bus.connect(connmanName, servicePath, QStringLiteral("net.connman.Service"),
                QStringLiteral("PropertyChanged"), this, SLOT(propertyChanged(QString, QDBusVariant)));
    bus.connect(connmanName, QStringLiteral("/"), QStringLiteral("net.connman.Manager"),
                QStringLiteral("ServicesChanged"), this, SLOT(servicesChanged(QDBusMessage)));
}

bool Cable::plugIn()
{
    m_device.simulator.setCable(true);
    return test_support::waitUntil([this] { return m_state == QLatin1String("online"); });
}

bool Cable::pullOut()
{
    m_isListed = true;
    m_device.simulator.setCable(false);
    return test_support::waitUntil([this] { return !m_isListed; });
}

void Cable::propertyChanged(const QString &name, const QDBusVariant &value)
{
    if (name == QLatin1String("State")) {
        m_state = value.variant().toString();
    }
}

void Cable::servicesChanged(const QDBusMessage &message)
{
    const auto removed = qdbus_cast<QList<QDBusObjectPath>>(message.arguments().value(1));
    if (removed.contains(QDBusObjectPath(servicePath))) {
        m_isListed = false;
    }
}

} // namespace soak
