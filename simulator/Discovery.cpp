#include "Discovery.h"

#include "Neighbourhood.h"
#include "ServiceList.h"
#include <utility>

namespace simulator {

namespace {
const QStringList keptProperties{QStringLiteral("Favorite"),
                                 QStringLiteral("AutoConnect"),
                                 connman::ipv4Configuration,
                                 connman::ipv6Configuration,
                                 QStringLiteral("Nameservers.Configuration"),
                                 QStringLiteral("Timeservers.Configuration"),
                                 QStringLiteral("Domains.Configuration"),
                                 QStringLiteral("Proxy.Configuration")};
}

struct Discovery::Kept
{
    QVariantMap properties;
    QString passphrase;
    QString identity;
};

Discovery::Discovery(ServiceList &services)
    : m_services(services)
{
}

ServicePtr Discovery::scanned(const AccessPoint &accessPoint)
{
    if (!accessPoint.isHidden) {
        return named(accessPoint);
    }
    const QString identifier = accessPoint.scannedIdentifier(m_cardAddress);
    QVariantMap properties = newServiceProperties(identifier, m_cardAddress);
    properties.remove(QStringLiteral("Name"));
    properties[QStringLiteral("Security")] = accessPoint.securityWords();
    properties[QStringLiteral("Strength")] = QVariant::fromValue(accessPoint.strength);
    return service(identifier, properties, {});
}

ServicePtr Discovery::named(const AccessPoint &accessPoint)
{
    const QString identifier = accessPoint.namedIdentifier(m_cardAddress);
    QVariantMap properties = newServiceProperties(identifier, m_cardAddress);
    properties[QStringLiteral("Name")] = accessPoint.ssid;
    properties[QStringLiteral("Security")] = accessPoint.securityWords();
    properties[QStringLiteral("Strength")] = QVariant::fromValue(accessPoint.strength);
    return service(identifier, properties, accessPoint.ssid);
}

ServicePtr Discovery::cable()
{
    return service(cableIdentifier(), newServiceProperties(cableIdentifier()), {});
}

void Discovery::remove(const ServicePtr &service)
{
    keep(*service);
    ++service->attempt;
    m_services.remove(service);
}

ServicePtr Discovery::service(const QString &identifier, const QVariantMap &properties, const QString &ssid)
{
    if (ServicePtr known = m_services.find(identifier)) {
        return known;
    }
    ServicePtr added = m_services.add(identifier, properties);
    added->ssid = ssid;
    restore(*added);
    m_services.sort();
    return added;
}

void Discovery::keep(const Service &service)
{
    if (!service.isFavorite()) {
        m_kept.remove(service.identifier);
        return;
    }
    auto kept = std::make_shared<Kept>();
    for (const QString &property : keptProperties) {
        kept->properties.insert(property, service.properties.value(property));
    }
    kept->passphrase = service.passphrase;
    kept->identity = service.identity;
    m_kept.insert(service.identifier, kept);
}

void Discovery::restore(Service &service) const
{
    const std::shared_ptr<Kept> kept = m_kept.value(service.identifier);
    if (kept == nullptr) {
        return;
    }
    for (auto property = kept->properties.cbegin(); property != kept->properties.cend(); ++property) {
        service.properties.insert(property.key(), property.value());
    }
    service.passphrase = kept->passphrase;
    service.identity = kept->identity;
}

} // namespace simulator
