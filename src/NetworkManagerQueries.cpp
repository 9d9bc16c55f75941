// NetworkManager's read-only operations.

#include "NetworkManager.h"

#include "ConnmanNames.h"
#include "ReplyValues.h"

#include <algorithm>
#include <iterator>

QVariantMap NetworkManager::networks()
{
    m_lookup.scan();
    QVariantMap networks;
    const QList<Service> all = m_lookup.services();
    for (const Service &service : all) {
        const QVariantMap ipv6 = service->properties().value(ConnmanNames::Ipv6).toMap();
        // A deliberate side effect: every listed network gets IPv6 auto-configuration.
        if (ipv6.value(ConnmanNames::Method).toString() != ConnmanNames::Auto) {
            configureIPv6(service->identifier(), ConnmanNames::Auto);
        }
        networks.insert(
            service->identifier(),
            ReplyValues::sendable(service->properties(), ReplyValues::Place::InDictionaryOfReply));
    }
    return networks;
}

QStringList NetworkManager::wpsNetworks()
{
    m_lookup.scan();
    QStringList names;
    const QList<Service> all = m_lookup.services();
    for (const Service &service : all) {
        if (service->security().contains(ConnmanNames::WpsSecurity)) {
            names.append(service->name());
        }
    }
    return names;
}

QStringList NetworkManager::activeNetworks()
{
    QStringList names;
    const QList<Service> all = m_lookup.services();
    for (const Service &service : all) {
        if (service->state() >= ConnmanService::State::Association) {
            names.append(service->name());
        }
    }
    return names;
}

QVariantMap NetworkManager::getConfiguration(const QString &name)
{
    const Service service = findOrReport(name);
    if (!service) {
        return {};
    }
    return ReplyValues::sendable(service->getIpv4Configuration(), ReplyValues::Place::InReply);
}

QVariantMap NetworkManager::getIPv6Configuration(const QString &name)
{
    const Service service = findOrReport(name);
    if (!service) {
        return {};
    }
    return ReplyValues::sendable(service->getUpdatedIpv6Configuration(), ReplyValues::Place::InReply);
}

QString NetworkManager::getAddress(const QString &name)
{
    return ipv4Value(name, ConnmanNames::Address);
}

QString NetworkManager::getNetmask(const QString &name)
{
    return ipv4Value(name, ConnmanNames::Netmask);
}

QString NetworkManager::getGateway(const QString &name)
{
    return ipv4Value(name, ConnmanNames::Gateway);
}

QString NetworkManager::getIPv6Address(const QString &name)
{
    return ipv6Value(name, ConnmanNames::Address);
}

QString NetworkManager::getPrefix(const QString &name)
{
    return ipv6Value(name, ConnmanNames::PrefixLength);
}

QString NetworkManager::ipv4Value(const QString &name, const QString &key)
{
    const Service service = findOrReport(name);
    return service ? service->getIpv4ConfigurationValue(key) : QString();
}

QString NetworkManager::ipv6Value(const QString &name, const QString &key)
{
    const Service service = findOrReport(name);
    return service ? service->getIpv6ConfigurationValue(key) : QString();
}

QStringList NetworkManager::getNameservers(const QString &name)
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

bool NetworkManager::checkWifiTechnology()
{
    return hasTechnology(ConnmanNames::Wifi);
}

bool NetworkManager::checkBluetoothTechnology()
{
    return hasTechnology(ConnmanNames::Bluetooth);
}

bool NetworkManager::hasTechnology(const QString &name)
{
    return m_manager != nullptr && m_manager->hasTechnology(name);
}
