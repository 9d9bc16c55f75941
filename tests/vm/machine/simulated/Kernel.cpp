#include "Kernel.h"

#include "Bench.h"
#include "PlainValue.h"
#include "Text.h"

namespace {

/// The services, as the simulator has them, that are connected or getting their addresses.
QList<QVariantMap> linkedServices(const QString &type)
{
    static const QStringList linked{"configuration"_s, "ready"_s, "online"_s};
    QList<QVariantMap> services;
    test_support::SimulatorClient &simulator = Bench::instance().simulator;
    const QStringList identifiers = simulator.services();
    for (const QString &identifier : identifiers) {
        const QVariantMap properties = simulator.serviceProperties(identifier);
        if (properties.value("Type"_s) == type && linked.contains(properties.value("State"_s).toString())) {
            services.append(properties);
        }
    }
    return services;
}

QString addressIn(const QVariantMap &properties, const QString &dictionary)
{
    return test_support::plain(properties.value(dictionary)).toMap().value("Address"_s).toString();
}

} // namespace

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
