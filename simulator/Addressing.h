#pragma once

#include "Service.h"
#include <QObject>

namespace simulator {

class ServiceList;
class ServiceStates;
class Neighbourhood;
struct Timings;

/// How a service that has its link comes by its addresses, gets ready and, as the default connection, online.
class Addressing : public QObject
{
    Q_OBJECT
public:
    Addressing(ServiceList &services, ServiceStates &states, const Neighbourhood &neighbourhood,
               const Timings &timings, QObject *parent = nullptr);

    /// The link is there.
    void configure(const ServicePtr &service);
    /// Gets a service its addresses once more, after a change of its configuration.
    void reconfigure(const ServicePtr &service);
    /// The same for IPv6: an address of that kind connects a service that waits for one.
    void reconfigureIpv6(const ServicePtr &service);
    /// DHCP servers answer again: whoever waits for an address gets one.
    void retry();
    /// Another service may have become the default connection.
    void checkOnline();

private:
    void obtain(const ServicePtr &service);
    bool hasIpv6(const Service &service) const;
    void becomeReady(const ServicePtr &service);
    void checkOnline(const ServicePtr &service);
    bool isDefault(const ServicePtr &service) const;

    ServiceList &m_services;
    ServiceStates &m_states;
    const Neighbourhood &m_neighbourhood;
    const Timings &m_timings;
};

} // namespace simulator
