#include "ServiceStates.h"

#include "ConnmanErrors.h"
#include "ConnmanWire.h"
#include "ManagerState.h"
#include "Neighbourhood.h"
#include "ServiceList.h"
#include <QDBusArgument>
#include <utility>

namespace simulator {

namespace {
const QString ipv4Property = QStringLiteral("IPv4");
const QString ipv6Property = QStringLiteral("IPv6");
const QString nameserversProperty = QStringLiteral("Nameservers");
const QString linkLocalAddress = QStringLiteral("169.254.77.50");
} // namespace

ServiceStates::ServiceStates(ServiceList &services, ManagerState &manager, const Neighbourhood &neighbourhood)
    : m_services(services)
    , m_manager(manager)
    , m_neighbourhood(neighbourhood)
{
}

void ServiceStates::associate(Service &service)
{
    setState(service, QStringLiteral("association"));
    m_services.sort();
}

void ServiceStates::configure(Service &service)
{
    setState(service, QStringLiteral("configuration"));
    m_manager.update();
    m_services.sort();
}

// ConnMan says "ready" first and tells the addresses afterwards.
void ServiceStates::becomeReady(Service &service)
{
    setState(service, QStringLiteral("ready"));
    setError(service, {});
    if (!service.isFavorite()) {
        m_services.set(service, QStringLiteral("Favorite"), true);
        service.properties.insert(QStringLiteral("AutoConnect"), true); // ConnMan does not tell this one
    }
    service.useWps = false;
    service.answerConnect();
    m_services.tell(service, QStringLiteral("Domains"), service.properties.value(QStringLiteral("Domains")));
    tellProxy(service);
    m_manager.update();
    m_services.sort();
    tellAddresses(service);
}

void ServiceStates::becomeOnline(Service &service)
{
    setState(service, QStringLiteral("online"));
    m_manager.update();
    m_services.sort();
}

void ServiceStates::fail(Service &service, const QString &error)
{
    setError(service, error);
    setState(service, QStringLiteral("failure"));
    m_manager.update();
}

void ServiceStates::becomeIdle(Service &service)
{
    setState(service, QStringLiteral("idle"));
    m_services.sort();
}

void ServiceStates::disconnect(Service &service)
{
    if (service.isConnected()) { // its addresses go before the link does
        setState(service, QStringLiteral("configuration"));
        m_manager.update();
    }
    setState(service, QStringLiteral("disconnect"));
    setError(service, {});
    service.refuseConnect(error::operationAborted);
    m_services.tell(service, QStringLiteral("Domains"), service.properties.value(QStringLiteral("Domains")));
    m_services.set(service, QStringLiteral("Proxy"), QVariantMap());
    setState(service, QStringLiteral("idle"));
    m_manager.update();
    m_services.sort();
    clearAddresses(service);
}

// ConnMan tells an error that is gone as an empty one and keeps no such property.
void ServiceStates::setError(Service &service, const QString &error)
{
    if (service.error() == error) {
        return;
    }
    m_services.set(service, QStringLiteral("Error"), error);
    if (error.isEmpty()) {
        service.properties.remove(QStringLiteral("Error"));
    }
}

void ServiceStates::tellAddresses(Service &service)
{
    tellIpv4(service);
    tellIpv6(service);
    tellNameservers(service);
}

// The kernel has the address first and then the route; what was set by hand on a connection shows before
// either.
void ServiceStates::tellIpv4(Service &service)
{
    const QVariantMap complete = ipv4(service);
    QVariantMap withoutRoute = complete;
    withoutRoute.remove(connman::gatewayKey);
    if (std::exchange(service.isReconfigured, false) &&
        complete.value(connman::methodKey) == QLatin1String("manual")) {
        m_services.set(service, ipv4Property,
                       QVariantMap{{connman::methodKey, complete.value(connman::methodKey)}});
    }
    for (const QVariantMap &known : {withoutRoute, complete}) {
        m_services.change(service, ipv4Property, known);
    }
}

// Nothing is known of a proxy that nobody has set.
void ServiceStates::tellProxy(Service &service)
{
    const auto configured =
        qdbus_cast<QVariantMap>(service.properties.value(QStringLiteral("Proxy.Configuration")));
    const bool isSet = !service.isIdle() && configured.value(connman::methodKey) != QLatin1String("auto");
    m_services.set(service, QStringLiteral("Proxy"), isSet ? configured : QVariantMap());
}

void ServiceStates::tellIpv6(Service &service)
{
    m_services.change(service, ipv6Property, ipv6(service));
}

void ServiceStates::tellNameservers(Service &service)
{
    m_services.set(service, nameserversProperty,
                   service.isConnected() ? nameservers(service) : QStringList());
}

void ServiceStates::setState(Service &service, const QString &state)
{
    m_services.change(service, QStringLiteral("State"), state);
}

void ServiceStates::clearAddresses(Service &service)
{
    m_services.set(service, ipv4Property, QVariantMap());
    m_services.set(service, ipv6Property, QVariantMap());
    m_services.set(service, nameserversProperty, QStringList());
}

QVariantMap ServiceStates::ipv4(const Service &service) const
{
    const auto configuration = qdbus_cast<QVariantMap>(service.properties.value(connman::ipv4Configuration));
    const QString configured = configuration.value(connman::methodKey).toString();
    if (configured == QLatin1String("off")) {
        return {};
    }
    if (configured == QLatin1String("manual")) {
        return configuration;
    }
    const std::optional<Lease> lease = m_neighbourhood.lease(service);
    if (!lease && configured != QLatin1String("auto")) {
        return {}; // connected by IPv6 alone
    }
    if (!lease) {
        return {{connman::methodKey, QStringLiteral("auto")},
                {connman::addressKey, linkLocalAddress},
                {connman::netmaskKey, QStringLiteral("255.255.0.0")}};
    }
    return {{connman::methodKey, QStringLiteral("dhcp")},
            {connman::addressKey, lease->address},
            {connman::netmaskKey, lease->netmask},
            {connman::gatewayKey, lease->gateway}};
}

QVariantMap ServiceStates::ipv6(const Service &service) const
{
    constexpr uchar prefixLength = 64;
    const auto configuration = qdbus_cast<QVariantMap>(service.properties.value(connman::ipv6Configuration));
    const QString configured = configuration.value(connman::methodKey).toString();
    if (configured == QLatin1String("manual")) {
        return configuration;
    }
    const QString address = m_neighbourhood.ipv6Address(service);
    if (configured == QLatin1String("off") || address.isEmpty()) {
        return {};
    }
    return {{connman::methodKey, QStringLiteral("auto")},
            {connman::addressKey, address},
            {QStringLiteral("PrefixLength"), QVariant::fromValue(prefixLength)},
            {QStringLiteral("Privacy"), QStringLiteral("disabled")}};
}

QStringList ServiceStates::nameservers(const Service &service) const
{
    const QStringList configured = service.properties.value(connman::nameserversConfiguration).toStringList();
    if (!configured.isEmpty()) {
        return configured;
    }
    const bool hasLease = service.method(connman::ipv4Configuration) == QLatin1String("dhcp");
    const std::optional<Lease> lease = hasLease ? m_neighbourhood.lease(service) : std::nullopt;
    return lease ? lease->nameservers : QStringList();
}

} // namespace simulator
