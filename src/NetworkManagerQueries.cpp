// NetworkManager's read-only operations.

#include "NetworkManager.h"

#include "ConnmanNames.h"
#include "ConnmanTechnology.h"
#include "NetworkManagerConstants.h"

#include <algorithm>
#include <iterator>

using namespace NetworkManagerConstants;

QVariantMap NetworkManager::networks()
{
    scanWifi();
    QVariantMap networks;
    const QList<Service> all = services();
    for (const Service &service : all) {
        const QVariantMap ipv6 = service->properties().value(ConnmanNames::Ipv6).toMap();
        // A deliberate side effect: every listed network gets IPv6 auto-configuration.
        if (ipv6.value(ConnmanNames::Method).toString() != Auto) {
            configureIPv6(service->identifier(), Auto);
        }
        networks.insert(service->identifier(), service->properties());
    }
    return networks;
}

QStringList NetworkManager::wpsNetworks()
{
    scanWifi();
    QStringList names;
    const QList<Service> all = services();
    for (const Service &service : all) {
        if (service->security().contains(WpsSecurity)) {
            names.append(service->name());
        }
    }
    return names;
}

QStringList NetworkManager::activeNetworks()
{
    QStringList names;
    const QList<Service> all = services();
    for (const Service &service : all) {
        if (service->state() >= ConnmanService::State::Association) {
            names.append(service->name());
        }
    }
    return names;
}

QVariantMap NetworkManager::getConfiguration(const QString &name) const
{
    const Service service = findOrReport(name);
    return service ? service->getIpv4Configuration() : QVariantMap();
}

QVariantMap NetworkManager::getIPv6Configuration(const QString &name) const
{
    const Service service = findOrReport(name);
    return service ? service->getUpdatedIpv6Configuration() : QVariantMap();
}

QString NetworkManager::getAddress(const QString &name) const
{
    return ipv4Value(name, ConnmanNames::Address);
}

QString NetworkManager::getNetmask(const QString &name) const
{
    return ipv4Value(name, ConnmanNames::Netmask);
}

QString NetworkManager::getGateway(const QString &name) const
{
    return ipv4Value(name, ConnmanNames::Gateway);
}

QString NetworkManager::getIPv6Address(const QString &name) const
{
    return ipv6Value(name, ConnmanNames::Address);
}

QString NetworkManager::getPrefix(const QString &name) const
{
    return ipv6Value(name, ConnmanNames::PrefixLength);
}

QString NetworkManager::ipv4Value(const QString &name, const QString &key) const
{
    const Service service = findOrReport(name);
    return service ? service->getIpv4ConfigurationValue(key) : QString();
}

QString NetworkManager::ipv6Value(const QString &name, const QString &key) const
{
    const Service service = findOrReport(name);
    return service ? service->getIpv6ConfigurationValue(key) : QString();
}

QStringList NetworkManager::getNameservers(const QString &name) const
{
    const Service service = findOrReport(name);
    if (!service) {
        return {};
    }
    const QList<QHostAddress> servers = service->getNameservers();
    QStringList texts;
    std::transform(servers.cbegin(), servers.cend(), std::back_inserter(texts),
                   [](const QHostAddress &server) { return server.toString(); });
    return texts;
}

bool NetworkManager::getWifiPower() const
{
    return m_wifi != nullptr && m_wifi->isPowered() > 0;
}

bool NetworkManager::checkWifiTechnology() const
{
    return hasTechnology(WifiTechnology);
}

bool NetworkManager::checkBluetoothTechnology() const
{
    return hasTechnology(BluetoothTechnology);
}

bool NetworkManager::hasTechnology(const QString &name) const
{
    return m_manager != nullptr && m_manager->hasTechnology(name);
}
