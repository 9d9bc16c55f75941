#include "ServiceSettings.h"

#include "Addressing.h"
#include "Connector.h"
#include "ConnmanErrors.h"
#include "ConnmanWire.h"
#include "IpConfiguration.h"
#include "ServiceList.h"
#include "ServiceStates.h"
#include <QDBusArgument>

namespace simulator {

namespace {
const QString autoConnect = QStringLiteral("AutoConnect");
const QString timeserversConfiguration = QStringLiteral("Timeservers.Configuration");
const QString domainsConfiguration = QStringLiteral("Domains.Configuration");
const QString proxyConfiguration = QStringLiteral("Proxy.Configuration");
const QString mdnsConfiguration = QStringLiteral("mDNS.Configuration");
} // namespace

ServiceSettings::ServiceSettings(ServiceList &services, ServiceStates &states, Addressing &addressing,
                                 Connector &connector)
    : m_services(services)
    , m_states(states)
    , m_addressing(addressing)
    , m_connector(connector)
{
}

std::optional<ErrorReply> ServiceSettings::set(const ServicePtr &service, const QString &property,
                                               const QVariant &value)
{
    if (property == autoConnect) {
        return setAutoConnect(service, value);
    }
    static const QStringList settable{connman::nameserversConfiguration,
                                      timeserversConfiguration,
                                      domainsConfiguration,
                                      proxyConfiguration,
                                      mdnsConfiguration,
                                      connman::ipv4Configuration,
                                      connman::ipv6Configuration};
    if (!settable.contains(property)) {
        return error::invalidProperty;
    }
    if (service->isImmutable()) {
        return error::notSupported;
    }
    if (property == connman::nameserversConfiguration) {
        return setNameservers(service, value);
    }
    if (property == connman::ipv4Configuration) {
        return setIpv4(service, value);
    }
    if (property == connman::ipv6Configuration) {
        return setIpv6(service, value);
    }
    if (property == proxyConfiguration) {
        return setProxy(service, value);
    }
    return property == mdnsConfiguration ? setMdns(service, value) : setStrings(service, property, value);
}

std::optional<ErrorReply> ServiceSettings::setAutoConnect(const ServicePtr &service, const QVariant &value)
{
    if (value.userType() != QMetaType::Bool) {
        return error::invalidArguments;
    }
    if (!service->isFavorite()) {
        return error::invalidService;
    }
    if (service->connectsByItself() != value.toBool()) {
        m_services.set(*service, autoConnect, value);
        if (value.toBool()) {
            m_connector.autoConnect();
        }
    }
    return std::nullopt;
}

std::optional<ErrorReply> ServiceSettings::setNameservers(const ServicePtr &service, const QVariant &value)
{
    const std::optional<QStringList> nameservers = stringsOf(value);
    if (!nameservers) {
        return error::invalidArguments;
    }
    m_services.set(*service, connman::nameserversConfiguration, onlyAddresses(*nameservers));
    m_states.tellNameservers(*service);
    return std::nullopt;
}

std::optional<ErrorReply> ServiceSettings::setStrings(const ServicePtr &service, const QString &property,
                                                      const QVariant &value)
{
    const std::optional<QStringList> strings = stringsOf(value);
    if (!strings) {
        return error::invalidArguments;
    }
    QStringList kept = *strings;
    kept.removeAll(QString());
    m_services.set(*service, property, kept);
    if (property == domainsConfiguration) {
        m_services.set(*service, QStringLiteral("Domains"), service->isIdle() ? QStringList() : kept);
    }
    return std::nullopt;
}

std::optional<ErrorReply> ServiceSettings::setProxy(const ServicePtr &service, const QVariant &value)
{
    if (!stringsOf(value)) { // any array gets this far
        return error::invalidArguments;
    }
    const auto configuration = qdbus_cast<QVariantMap>(value);
    static const QStringList methods{QStringLiteral("direct"), QStringLiteral("auto"),
                                     QStringLiteral("manual")};
    if (!methods.contains(configuration.value(connman::methodKey).toString())) {
        return error::invalidArguments;
    }
    m_services.set(*service, proxyConfiguration, configuration);
    m_states.tellProxy(*service);
    return std::nullopt;
}

std::optional<ErrorReply> ServiceSettings::setMdns(const ServicePtr &service, const QVariant &value)
{
    if (value.userType() != QMetaType::Bool) {
        return error::invalidArguments;
    }
    m_services.set(*service, mdnsConfiguration, value);
    return std::nullopt;
}

// ConnMan takes the old addresses away before it shows the new configuration.
std::optional<ErrorReply> ServiceSettings::setIpv4(const ServicePtr &service, const QVariant &value)
{
    const IpConfiguration configuration = IpConfiguration::ipv4(value);
    if (configuration.refusal) {
        return configuration.refusal;
    }
    // While the radio still associates there are no addresses yet to take away.
    const bool isActive = !service->isIdle() && service->state() != QLatin1String("association");
    if (isActive) {
        m_states.configure(*service);
    }
    m_services.set(*service, QStringLiteral("IPv4"), QVariantMap());
    m_services.set(*service, connman::ipv4Configuration, configuration.shown);
    if (isActive) {
        service->isReconfigured = true;
        m_addressing.reconfigure(service);
    }
    return std::nullopt;
}

// The connection stands on IPv4 meanwhile.
std::optional<ErrorReply> ServiceSettings::setIpv6(const ServicePtr &service, const QVariant &value)
{
    const IpConfiguration configuration = IpConfiguration::ipv6(value);
    if (configuration.refusal) {
        return configuration.refusal;
    }
    m_services.set(*service, QStringLiteral("IPv6"), QVariantMap());
    m_services.set(*service, connman::ipv6Configuration, configuration.shown);
    m_addressing.reconfigureIpv6(service);
    return std::nullopt;
}

} // namespace simulator
