// The part of the script interface that deals with ConnMan's objects, raw, and with the world around the
// device.

#include "ScriptService.h"

namespace simulator {

namespace {
QString crowdIdentifier(uint number)
{
    return QStringLiteral("wifi_020000000200_%1_managed_psk").arg(number, 8, 10, QLatin1Char('0'));
}

QVariantMap overridden(QVariantMap usual, const QVariantMap &properties)
{
    for (auto property = properties.cbegin(); property != properties.cend(); ++property) {
        usual.insert(property.key(), property.value());
    }
    return usual;
}
} // namespace

QDBusObjectPath ScriptService::addService(const QString &identifier, const QVariantMap &properties)
{
    ServiceList &services = m_device.connman.services();
    if (services.find(identifier) != nullptr) {
        refuse(QStringLiteral("The service is there already: ") + identifier);
        return {};
    }
    QVariantMap usual = newServiceProperties(identifier);
    if (properties.value(QStringLiteral("Favorite")).toBool()) {
        usual.insert(QStringLiteral("AutoConnect"), true);
    }
    const ServicePtr service = services.add(identifier, overridden(usual, properties));
    m_device.connman.state().update();
    services.announceNow();
    return QDBusObjectPath(service->path());
}

void ScriptService::addServices(uint first, uint count)
{
    ServiceList &services = m_device.connman.services();
    for (uint number = first; number < first + count; ++number) {
        const QString identifier = crowdIdentifier(number);
        if (services.find(identifier) == nullptr) {
            services.add(identifier, newServiceProperties(identifier));
        }
    }
    services.announceNow();
}

void ScriptService::removeService(const QString &identifier)
{
    if (const ServicePtr service = knownService(identifier)) {
        ServiceList &services = m_device.connman.services();
        ++service->attempt;
        services.remove(service);
        m_device.connman.state().update();
        services.announceNow();
    }
}

void ScriptService::setServiceProperty(const QString &identifier, const QString &name,
                                       const QDBusVariant &value, bool silent)
{
    const ServicePtr service = knownService(identifier);
    if (service == nullptr) {
        return;
    }
    service->properties.insert(name, value.variant());
    if (!silent) {
        m_device.connman.services().tell(*service, name, value.variant());
        m_device.connman.state().update();
    }
}

void ScriptService::removeServiceProperty(const QString &identifier, const QString &name)
{
    if (const ServicePtr service = knownService(identifier)) {
        service->properties.remove(name);
    }
}

QVariantMap ScriptService::serviceProperties(const QString &identifier)
{
    const ServicePtr service = knownService(identifier);
    return service != nullptr ? service->properties : QVariantMap();
}

void ScriptService::addTechnology(const QString &name, const QVariantMap &properties)
{
    TechnologyList &technologies = m_device.connman.technologies();
    const TechnologyPtr known = technologies.find(name);
    const QVariantMap usual = known != nullptr ? known->properties : newTechnologyProperties(name);
    technologies.add(name, overridden(usual, properties));
}

void ScriptService::removeTechnology(const QString &name)
{
    if (knownTechnology(name) != nullptr) {
        m_device.connman.technologies().remove(name);
    }
}

void ScriptService::setTechnologyProperty(const QString &name, const QString &property,
                                          const QDBusVariant &value, bool silent)
{
    const TechnologyPtr technology = knownTechnology(name);
    if (technology == nullptr) {
        return;
    }
    if (silent) {
        technology->properties.insert(property, value.variant());
    } else {
        m_device.connman.technologies().set(*technology, property, value.variant());
    }
}

void ScriptService::removeTechnologyProperty(const QString &name, const QString &property)
{
    if (const TechnologyPtr technology = knownTechnology(name)) {
        technology->properties.remove(property);
    }
}

QString ScriptService::addNetwork(const QVariantMap &options)
{
    if (options.value(QStringLiteral("ssid")).toString().isEmpty()) {
        refuse(QStringLiteral("A network needs an \"ssid\""));
        return {};
    }
    return m_device.connman.addNetwork(options, options.value(QStringLiteral("atOnce"), true).toBool());
}

void ScriptService::removeNetwork(const QString &ssid)
{
    if (!m_device.connman.removeNetwork(ssid)) {
        refuse(QStringLiteral("No such network: ") + ssid);
    }
}

void ScriptService::setInReach(const QString &ssid, bool inReach)
{
    if (!m_device.connman.setInReach(ssid, inReach)) {
        refuse(QStringLiteral("No such network: ") + ssid);
    }
}

QString ScriptService::storedPassphrase(const QString &identifier)
{
    const ServicePtr service = knownService(identifier);
    return service != nullptr && service->isFavorite() ? service->passphrase : QString();
}

ServicePtr ScriptService::knownService(const QString &identifier)
{
    ServicePtr service = m_device.connman.services().find(identifier);
    if (service == nullptr) {
        refuse(QStringLiteral("No such service: ") + identifier);
    }
    return service;
}

TechnologyPtr ScriptService::knownTechnology(const QString &name)
{
    TechnologyPtr technology = m_device.connman.technologies().find(name);
    if (technology == nullptr) {
        refuse(QStringLiteral("No such technology: ") + name);
    }
    return technology;
}

} // namespace simulator
