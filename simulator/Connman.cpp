#include "Connman.h"

#include "ConnmanErrors.h"
#include "ConnmanWire.h"

namespace simulator {

Connman::Connman(const QString &address, Instruments instruments, const Timings &timings, QObject *parent)
    : BusService(address, connman::busName, instruments, parent)
    , m_timings(timings)
    , m_services(*this, m_timings)
    , m_technologies(*this)
    , m_agents(*this, m_timings)
    , m_state(*this, m_services, m_technologies)
    , m_states(m_services, m_state, m_surroundings)
    , m_discovery(m_services)
    , m_connector({m_services, m_states, m_discovery, m_agents, m_surroundings, m_timings})
    , m_settings(m_services, m_states, m_connector)
    , m_radio({m_technologies, m_services, m_state, m_discovery, m_connector, m_surroundings, m_timings})
{
    connect(this, &BusService::joined, this, &Connman::announceEverything);
    connect(this, &BusService::left, this, &Connman::forgetClients);
    for (const QString &type : {QStringLiteral("ethernet"), QStringLiteral("wifi")}) {
        QVariantMap properties = newTechnologyProperties(type);
        properties[QStringLiteral("Powered")] = true;
        m_technologies.add(type, properties);
    }
}

QString Connman::addNetwork(const QVariantMap &options, bool atOnce)
{
    const AccessPoint accessPoint = m_surroundings.add(AccessPoint::fromOptions(options, m_networkCount++));
    if (atOnce && m_technologies.isPowered(QStringLiteral("wifi"))) {
        m_radio.lookAround();
    }
    return accessPoint.scannedIdentifier();
}

bool Connman::removeNetwork(const QString &ssid)
{
    const bool isKnown = setInReach(ssid, false);
    m_surroundings.remove(ssid);
    return isKnown;
}

bool Connman::setInReach(const QString &ssid, bool isInReach)
{
    const AccessPoint *accessPoint = m_surroundings.setInReach(ssid, isInReach);
    if (accessPoint == nullptr) {
        return false;
    }
    if (!isInReach) {
        m_radio.loseNetwork(accessPoint->namedIdentifier());
        m_radio.loseNetwork(accessPoint->scannedIdentifier());
    }
    m_radio.lookAround(); // another hidden network may go by the same identifier
    return true;
}

void Connman::setCable(const Cable &cable)
{
    m_surroundings.cable = cable;
    m_radio.cableChanged();
}

bool Connman::restart()
{
    m_agents.release();
    leave();
    forgetStates();
    if (!join()) {
        return false;
    }
    m_radio.cableChanged();
    m_radio.lookAround();
    return true;
}

void Connman::announceEverything()
{
    m_technologies.announceAll();
    m_services.announceAllAsNew();
}

// Agents and counters belong to connections of clients; a ConnMan that comes back knows none of them.
void Connman::forgetClients()
{
    m_agents.clear();
    m_counters.clear();
    m_connector.abandon();
    m_radio.abandon();
}

void Connman::forgetStates()
{
    const QVector<ServicePtr> services = m_services.all();
    for (const ServicePtr &service : services) {
        service->reason = ConnectReason::None;
        service->ignored = false;
        QVariantMap fresh = newServiceProperties(service->identifier);
        for (const auto &property : {QStringLiteral("State"), QStringLiteral("IPv4"), QStringLiteral("IPv6"),
                                     QStringLiteral("Nameservers"), QStringLiteral("Proxy")}) {
            service->properties.insert(property, fresh.value(property));
        }
        service->properties.remove(QStringLiteral("Error"));
        if (!service->isFavorite() || m_surroundings.isBehind(*service)) {
            m_discovery.remove(service); // what is around the device is discovered anew
        }
    }
    m_state.update();
}

void Connman::refuseUnknown(const Call &call) const
{
    static const QStringList branches{QStringLiteral("/net"), QStringLiteral("/net/connman"),
                                      QStringLiteral("/net/connman/service"),
                                      QStringLiteral("/net/connman/technology")};
    call.refuse(branches.contains(call.path()) ? error::unknownMethod(call) : error::unknownObject(call));
}

void Connman::handleCall(const Call &call)
{
    const QString path = call.path();
    if (path == connman::managerPath) {
        handleManagerCall(call);
    } else if (const TechnologyPtr technology = m_technologies.findByPath(path)) {
        handleTechnologyCall(call, technology);
    } else if (const ServicePtr service = m_services.findByPath(path)) {
        handleServiceCall(call, service);
    } else {
        refuseUnknown(call);
    }
}

} // namespace simulator
