#pragma once

#include "Service.h"
#include <QString>

namespace simulator {

class ManagerState;
class ServiceList;
class Neighbourhood;

/// Takes a service from one state to the next, with everything ConnMan changes and tells at that moment, in
/// its order. When and whether that happens is not decided here.
class ServiceStates
{
public:
    ServiceStates(ServiceList &services, ManagerState &manager, const Neighbourhood &neighbourhood);

    void associate(Service &service);
    void configure(Service &service);
    /// Answers the Connect that waits.
    void becomeReady(Service &service);
    void becomeOnline(Service &service);
    /// With "Error" set to `error` first.
    void fail(Service &service, const QString &error);
    /// Back from a failure.
    void becomeIdle(Service &service);
    /// Through "disconnect" to "idle", the addresses gone. The Connect that waits is aborted.
    void disconnect(Service &service);
    /// An empty `error` takes it away.
    void setError(Service &service, const QString &error);
    /// Fills "IPv4", "IPv6" and "Nameservers" from the configuration and the lease, and tells.
    void tellAddresses(Service &service);
    void tellIpv6(Service &service);
    void tellProxy(Service &service);
    void tellNameservers(Service &service);

private:
    void setState(Service &service, const QString &state);
    void tellIpv4(Service &service);
    void clearAddresses(Service &service);
    QVariantMap ipv4(const Service &service) const;
    QVariantMap ipv6(const Service &service) const;
    QStringList nameservers(const Service &service) const;

    ServiceList &m_services;
    ManagerState &m_manager;
    const Neighbourhood &m_neighbourhood;
};

} // namespace simulator
