// NetworkManager's operations on the IP settings of a network.

#include "NetworkManager.h"

#include "ConnmanNames.h"
#include "NetworkManagerLog.h"

using ConnmanNames::Auto;
using ConnmanNames::Dhcp;
using ConnmanNames::Manual;
using ConnmanNames::Off;

NetworkManager::Service NetworkManager::serviceToConfigure(const QString &name)
{
    if (name.isEmpty()) {
        // The complaint of connect(), on purpose.
        refuse("Can't connect with an empty network-name.",
               QStringLiteral("Invalid parameter, network: '%1'").arg(name));
        return {};
    }
    return findOrReport(name);
}

bool NetworkManager::configure(const QString &name, const QString &method, const QString &address,
                               const QString &netmask, const QString &gateway)
{
    using Configuration = ConnmanService::Configuration;
    const QHostAddress none;
    const Service service = serviceToConfigure(name);
    if (!service) {
        return false;
    }
    if (method == Off) {
        return reportRefusedConfiguration(service->configure(Configuration::Off, none, none, none), name,
                                          method);
    }
    if (method == Dhcp) {
        return reportRefusedConfiguration(service->configure(Configuration::Dhcp, none, none, none), name,
                                          method);
    }
    if (method == Manual) {
        return configureManual(*service, name, {address, netmask, gateway});
    }
    return refuseValue("Invalid configuration method:", method,
                       QStringLiteral("Invalid parameter, method: '%1'"));
}

bool NetworkManager::configureManual(ConnmanService &service, const QString &name,
                                     const ManualAddresses &texts)
{
    const QHostAddress address(texts.address);
    if (address.isNull()) {
        return refuseValue("Invalid address specified:", texts.address,
                           QStringLiteral("Invalid parameter, address: '%1'"));
    }
    const QHostAddress netmask(texts.netmask);
    if (netmask.isNull()) {
        return refuseValue("Invalid netmask specified:", texts.netmask,
                           QStringLiteral("Invalid parameter, netmask: '%1'"));
    }
    const QHostAddress gateway(texts.gateway);
    if (gateway.isNull()) {
        return refuseValue("Invalid gateway specified:", texts.gateway,
                           QStringLiteral("Invalid parameter, gateway: '%1'"));
    }
    const bool configured =
        service.configure(ConnmanService::Configuration::Manual, address, netmask, gateway);
    return reportRefusedConfiguration(configured, name, Manual);
}

bool NetworkManager::configureIPv6(const QString &name, const QString &method)
{
    const Service service = serviceToConfigure(name);
    if (!service) {
        return false;
    }
    if (method != Off && method != Auto) {
        // The closing quote is missing on purpose: clients know the text so.
        return refuseValue("Invalid configuration method for IPv6:", method,
                           QStringLiteral("Invalid parameter, method: '%1"));
    }
    return reportRefusedConfiguration(service->configureIpv6(method == Auto), name, method);
}

bool NetworkManager::setNameservers(const QString &name, const QStringList &servers)
{
    const Service service = serviceToConfigure(name);
    if (!service) {
        return false;
    }
    QList<QHostAddress> addresses;
    for (const QString &server : servers) {
        const QHostAddress address(server);
        if (address.isNull()) {
            return refuseValue("Invalid nameserver:", server,
                               QStringLiteral("Invalid parameter, nameserver: '%1'"));
        }
        addresses.append(address);
    }
    return service->setNameservers(addresses);
}

bool NetworkManager::reportRefusedConfiguration(bool configured, const QString &name, const QString &method)
{
    if (!configured) {
        emit error(QStringLiteral("Unable to configure network '%1' with method '%2'.").arg(name, method));
    }
    return configured;
}
