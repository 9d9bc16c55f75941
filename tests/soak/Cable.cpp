#include "Cable.h"

#include "EventWait.h"
#include "Run.h"
#include "TestDevice.h"
#include "Text.h"

#include <QDBusArgument>

namespace soak {

namespace {
const QString servicePath = "/net/connman/service/ethernet_020000000100_cable"_s;
} // namespace

Cable::Cable(test_support::TestDevice &device)
    : m_device(device)
{
    QDBusConnection bus = device.client.connection();
    bus.connect(connmanName, servicePath, "net.connman.Service"_s, "PropertyChanged"_s, this,
                SLOT(propertyChanged(QString, QDBusVariant)));
    bus.connect(connmanName, "/"_s, "net.connman.Manager"_s, "ServicesChanged"_s, this,
                SLOT(servicesChanged(QDBusMessage)));
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
