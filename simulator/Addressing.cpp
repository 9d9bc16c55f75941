#include "Addressing.h"

#include "ConnmanWire.h"
#include "Neighbourhood.h"
#include "ServiceList.h"
#include "ServiceStates.h"
#include "Timings.h"

namespace simulator {

Addressing::Addressing(ServiceList &services, ServiceStates &states, const Neighbourhood &neighbourhood,
                       const Timings &timings, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_states(states)
    , m_neighbourhood(neighbourhood)
    , m_timings(timings)
{
}

void Addressing::configure(const ServicePtr &service)
{
    m_states.configure(*service);
    if (service->method(connman::ipv4Configuration) == QLatin1String("manual")) {
        becomeReady(service);
    } else {
        obtain(service);
    }
}

void Addressing::reconfigure(const ServicePtr &service)
{
    ++service->attempt;
    if (service->method(connman::ipv4Configuration) == QLatin1String("manual")) {
        becomeReady(service);
    } else if (service->method(connman::ipv4Configuration) == QLatin1String("dhcp")) {
        obtain(service);
    }
}

void Addressing::reconfigureIpv6(const ServicePtr &service)
{
    if (service->isConnected()) {
        m_states.tellIpv6(*service);
    } else if (service->state() == QLatin1String("configuration") && hasIpv6(*service)) {
        becomeReady(service);
    }
}

void Addressing::retry()
{
    for (const ServicePtr &service : m_services.all()) {
        const bool waits = service->state() == QLatin1String("configuration") &&
                           service->method(connman::ipv4Configuration) == QLatin1String("dhcp");
        if (waits) {
            ++service->attempt;
            obtain(service);
        }
    }
}

void Addressing::checkOnline()
{
    for (const ServicePtr &service : m_services.all()) {
        checkOnline(service);
    }
}

void Addressing::obtain(const ServicePtr &service)
{
    const bool hasDhcp = m_neighbourhood.lease(*service).has_value();
    if (!hasDhcp && hasIpv6(*service)) { // an IPv6 address is enough, and no other is looked for any more
        later(this, service, m_timings.configuration, [this, service] { becomeReady(service); });
        return;
    }
    const int wait = hasDhcp ? m_timings.configuration : m_timings.linkLocal;
    later(this, service, wait, [this, service, hasDhcp] {
        if (!hasDhcp) {
            m_services.set(*service, connman::ipv4Configuration,
                           QVariantMap{{connman::methodKey, QStringLiteral("auto")}});
        }
        becomeReady(service);
    });
}

bool Addressing::hasIpv6(const Service &service) const
{
    const QString method = service.method(connman::ipv6Configuration);
    return method == QLatin1String("manual") ||
           (method == QLatin1String("auto") && !m_neighbourhood.ipv6Address(service).isEmpty());
}

void Addressing::becomeReady(const ServicePtr &service)
{
    ++service->attempt; // the attempt has ended: its time limit with it
    m_states.becomeReady(*service);
    checkOnline(service);
}

// ConnMan looks for the internet over the default connection only.
void Addressing::checkOnline(const ServicePtr &service)
{
    if (m_timings.online < 0 || service->state() != QLatin1String("ready") || !isDefault(service)) {
        return;
    }
    later(this, service, m_timings.online, [this, service] {
        if (service->state() == QLatin1String("ready") && isDefault(service)) {
            m_states.becomeOnline(*service);
        }
    });
}

bool Addressing::isDefault(const ServicePtr &service) const
{
    const QVector<ServicePtr> &services = m_services.all();
    return !services.isEmpty() && services.first() == service;
}

} // namespace simulator
