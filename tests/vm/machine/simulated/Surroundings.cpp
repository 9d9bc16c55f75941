#include "Surroundings.h"

#include "AccessPoints.h"
#include "Bench.h"
#include "Connman.h"

namespace {

using test_support::SimulatorClient;

SimulatorClient &simulator()
{
    return Bench::instance().simulator;
}

QString ssidOf(const QString &accessPoint)
{
    return accessPoints().value(accessPoint).value(QStringLiteral("ssid")).toString();
}

/// The services, as the simulator has them, that are connected or getting their addresses.
QList<QVariantMap> linkedServices(const QString &type)
{
    static const QStringList linked{QStringLiteral("configuration"), QStringLiteral("ready"),
                                    QStringLiteral("online")};
    QList<QVariantMap> services;
    const QStringList identifiers = simulator().services();
    for (const QString &identifier : identifiers) {
        const QVariantMap properties = simulator().serviceProperties(identifier);
        if (properties.value(QStringLiteral("Type")) == type &&
            linked.contains(properties.value(QStringLiteral("State")).toString())) {
            services.append(properties);
        }
    }
    return services;
}

QString addressIn(const QVariantMap &properties, const QString &dictionary)
{
    return plain(properties.value(dictionary)).toMap().value(QStringLiteral("Address")).toString();
}

} // namespace

bool Air::restore()
{
    if (!m_touched) {
        return true;
    }
    for (const QVariantMap &options : accessPoints()) {
        simulator().setInReach(options.value(QStringLiteral("ssid")).toString(), true);
    }
    const bool served = serveAddresses(true);
    m_touched = false;
    return served;
}

bool Air::switchOn(const QString &accessPoint)
{
    m_touched = true;
    simulator().setInReach(ssidOf(accessPoint), true);
    return true;
}

bool Air::switchOff(const QString &accessPoint)
{
    m_touched = true;
    simulator().setInReach(ssidOf(accessPoint), false);
    return true;
}

bool Air::serveAddresses(bool on)
{
    if (on != m_serving) {
        m_touched = true;
        m_serving = on;
        simulator().setAddressesServed(on);
    }
    return true;
}

bool Air::expectPin(const QString &accessPoint, const QString &pin)
{
    QVariantMap options = accessPoints().value(accessPoint);
    options.insert(QStringLiteral("pin"), pin);
    simulator().addNetwork(options);
    return true;
}

bool Air::reaches(const QString &address)
{
    return Kernel::addresses(QStringLiteral("wlan0")).contains(address);
}

bool Lan::plugIn(Server server)
{
    QVariantMap options{{QStringLiteral("dhcp"), server == Server::Dhcp || server == Server::OtherDhcp}};
    switch (server) {
    case Server::Nobody:
        break;
    case Server::Dhcp:
        options.insert(QStringLiteral("address"), QStringLiteral("10.20.0.50"));
        options.insert(QStringLiteral("gateway"), QStringLiteral("10.20.0.1"));
        break;
    case Server::OtherDhcp:
        options.insert(QStringLiteral("address"), QStringLiteral("10.21.0.50"));
        options.insert(QStringLiteral("gateway"), QStringLiteral("10.21.0.1"));
        break;
    case Server::Ipv6Router:
        options.insert(QStringLiteral("ipv6"), QStringLiteral("fd00:20::50"));
        break;
    }
    simulator().setCable(true, options);
    m_plugged = true;
    return true;
}

bool Lan::unplug()
{
    if (m_plugged) {
        simulator().setCable(false);
        m_plugged = false;
    }
    return true;
}

QString Kernel::joinedNetwork()
{
    return linkedServices(QStringLiteral("wifi")).value(0).value(QStringLiteral("Name")).toString();
}

QStringList Kernel::addresses(const QString &interface)
{
    const bool isWifi = interface == QStringLiteral("wlan0");
    QStringList addresses;
    const auto services = linkedServices(isWifi ? QStringLiteral("wifi") : QStringLiteral("ethernet"));
    for (const QVariantMap &properties : services) {
        addresses << addressIn(properties, QStringLiteral("IPv4"))
                  << addressIn(properties, QStringLiteral("IPv6"));
    }
    addresses.removeAll(QString());
    return addresses;
}

QString Kernel::hardwareAddress(const QString &interface)
{
    return Bench::instance().latest(QStringLiteral("ip link set dev %1 address ").arg(interface)).toLower();
}

QString Kernel::region()
{
    return Bench::instance().latest(QStringLiteral("iw reg set "));
}

bool Kernel::setRegion(const QString &country)
{
    return Bench::instance().run(QStringLiteral("iw"),
                                 {QStringLiteral("reg"), QStringLiteral("set"), country});
}
