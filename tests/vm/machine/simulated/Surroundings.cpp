#include "Surroundings.h"

#include "AccessPoints.h"
#include "Bench.h"
#include "Connman.h"
#include "Text.h"

namespace {

using test_support::SimulatorClient;

SimulatorClient &simulator()
{
    return Bench::instance().simulator;
}

QString ssidOf(const QString &accessPoint)
{
    return accessPoints().value(accessPoint).value("ssid"_s).toString();
}

/// The services, as the simulator has them, that are connected or getting their addresses.
QList<QVariantMap> linkedServices(const QString &type)
{
    static const QStringList linked{"configuration"_s, "ready"_s, "online"_s};
    QList<QVariantMap> services;
    const QStringList identifiers = simulator().services();
    for (const QString &identifier : identifiers) {
        const QVariantMap properties = simulator().serviceProperties(identifier);
        if (properties.value("Type"_s) == type && linked.contains(properties.value("State"_s).toString())) {
            services.append(properties);
        }
    }
    return services;
}

QString addressIn(const QVariantMap &properties, const QString &dictionary)
{
    return plain(properties.value(dictionary)).toMap().value("Address"_s).toString();
}

} // namespace

bool Air::restore()
{
    if (!m_touched) {
        return true;
    }
    for (const QVariantMap &options : accessPoints()) {
        simulator().setInReach(options.value("ssid"_s).toString(), true);
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
    options.insert("pin"_s, pin);
    simulator().addNetwork(options);
    return true;
}

bool Air::reaches(const QString &address)
{
    return Kernel::addresses("wlan0"_s).contains(address);
}

bool Lan::plugIn(Server server)
{
    QVariantMap options{{"dhcp"_s, server == Server::Dhcp || server == Server::OtherDhcp}};
    switch (server) {
    case Server::Nobody:
        break;
    case Server::Dhcp:
        options.insert("address"_s, "10.20.0.50"_s);
        options.insert("gateway"_s, "10.20.0.1"_s);
        break;
    case Server::OtherDhcp:
        options.insert("address"_s, "10.21.0.50"_s);
        options.insert("gateway"_s, "10.21.0.1"_s);
        break;
    case Server::Ipv6Router:
        options.insert("ipv6"_s, "fd00:20::50"_s);
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
    return linkedServices("wifi"_s).value(0).value("Name"_s).toString();
}

QStringList Kernel::addresses(const QString &interface)
{
    const bool isWifi = interface == "wlan0"_s;
    QStringList addresses;
    const auto services = linkedServices(isWifi ? "wifi"_s : "ethernet"_s);
    for (const QVariantMap &properties : services) {
        addresses << addressIn(properties, "IPv4"_s) << addressIn(properties, "IPv6"_s);
    }
    addresses.removeAll(QString());
    return addresses;
}

QString Kernel::hardwareAddress(const QString &interface)
{
    return Bench::instance().latest("ip link set dev %1 address "_s.arg(interface)).toLower();
}

QString Kernel::region()
{
    return Bench::instance().latest("iw reg set "_s);
}

bool Kernel::setRegion(const QString &country)
{
    return Bench::instance().run("iw"_s, {"reg"_s, "set"_s, country});
}
