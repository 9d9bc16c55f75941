#include "Connman.h"

#include "ConnmanWire.h"

namespace simulator {

Connman::Connman(const QString &address, Instruments instruments, const Timings &timings, QObject *parent)
    : BusService(address, connman::busName, instruments, parent)
    , m_timings(timings)
    , m_services(*this, m_timings)
    , m_technologies(*this)
    , m_agents(*this, m_timings)
    , m_state(*this, m_services, m_technologies)
    , m_states(m_services, m_state, m_neighbourhood)
    , m_discovery(m_services)
    , m_addressing(m_services, m_states, m_neighbourhood, m_timings)
    , m_connector({m_services, m_states, m_addressing, m_discovery, m_agents, m_neighbourhood, m_timings})
    , m_settings(m_services, m_states, m_addressing, m_connector)
    , m_radio({m_technologies, m_services, m_state, m_discovery, m_connector, m_neighbourhood, m_timings})
{
    connect(this, &BusService::joined, this, &Connman::announceEverything);
    connect(this, &BusService::left, this, &Connman::forgetClients);
    connect(&m_provisioning, &Provisioning::changed, this, &Connman::applyProvisioning);
    for (const QString &type : {QStringLiteral("ethernet"), QStringLiteral("wifi")}) {
        QVariantMap properties = newTechnologyProperties(type);
        properties[QStringLiteral("Powered")] = true;
        m_technologies.add(type, properties);
    }
}

QString Connman::addNetwork(const QVariantMap &options, bool atOnce)
{
    const AccessPoint accessPoint = m_neighbourhood.add(AccessPoint::fromOptions(options, m_networkCount++));
    if (atOnce && m_technologies.isPowered(QStringLiteral("wifi"))) {
        m_radio.lookAround();
    }
    return accessPoint.scannedIdentifier(m_discovery.cardAddress());
}

bool Connman::removeNetwork(const QString &ssid)
{
    const bool isKnown = setInReach(ssid, false);
    m_neighbourhood.remove(ssid);
    return isKnown;
}

bool Connman::setInReach(const QString &ssid, bool isInReach)
{
    const AccessPoint *accessPoint = m_neighbourhood.setInReach(ssid, isInReach);
    if (accessPoint == nullptr) {
        return false;
    }
    if (!isInReach) {
        m_radio.loseNetwork(accessPoint->namedIdentifier(m_discovery.cardAddress()));
        m_radio.loseNetwork(accessPoint->scannedIdentifier(m_discovery.cardAddress()));
    }
    m_radio.lookAround(); // another hidden network may go by the same identifier
    return true;
}

void Connman::setCable(const Cable &cable)
{
    m_neighbourhood.cable = cable;
    m_radio.cableChanged();
}

void Connman::setAddressesServed(bool served)
{
    m_neighbourhood.servesAddresses = served;
    if (served) {
        m_addressing.retry();
    }
}

void Connman::stop()
{
    if (isPresent()) {
        sayGoodbye();
        leave();
        forgetStates();
    }
}

// Everything is disconnected, switched off and gone before ConnMan itself is; agents are told nearly last.
void Connman::sayGoodbye()
{
    m_poweredAtStart.clear();
    for (const QString &type : m_technologies.types()) {
        if (m_technologies.isPowered(type)) {
            m_poweredAtStart.append(type);
        }
    }
    const QVector<ServicePtr> services = m_services.all();
    for (const ServicePtr &service : services) {
        service->ignored = true;
        m_connector.disconnectService(service);
    }
    m_technologies.announceAllAsGone();
    m_agents.release();
    m_services.announceAllAsGone();
}

bool Connman::start()
{
    if (!m_hardwareAddress.isEmpty()) {
        m_discovery.setCardAddress(m_hardwareAddress);
    }
    if (!join()) {
        return false;
    }
    for (const QString &type : qAsConst(m_poweredAtStart)) {
        m_radio.switchOnAtStart(m_technologies.find(type));
    }
    return true;
}

void Connman::erase()
{
    const QVector<ServicePtr> services = m_services.all();
    for (const ServicePtr &service : services) {
        m_services.remove(service);
    }
    m_discovery.erase();
    m_poweredAtStart = QStringList{QStringLiteral("ethernet")};
}

void Connman::announceEverything()
{
    m_technologies.announceAll();
    m_services.announceAllAsNew();
}

// Agents belong to connections of clients; a ConnMan that comes back knows none of them.
void Connman::forgetClients()
{
    m_agents.clear();
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
        if (!service->isFavorite() || m_neighbourhood.isBehind(*service)) {
            m_discovery.remove(service); // what is around the device is discovered anew
        }
    }
    m_state.update();
}

// An enterprise network is known while a file names it.
void Connman::applyProvisioning()
{
    if (!m_provisioning.hasDirectory()) {
        return;
    }
    for (AccessPoint &accessPoint : m_neighbourhood.accessPoints()) {
        if (accessPoint.security != QLatin1String("ieee8021x")) {
            continue;
        }
        accessPoint.isProvisioned = m_provisioning.names(accessPoint.ssid);
        const ServicePtr service = m_services.find(accessPoint.namedIdentifier(m_discovery.cardAddress()));
        if (service == nullptr || service->isImmutable() == accessPoint.isProvisioned) {
            continue;
        }
        accessPoint.isProvisioned ? m_connector.provision(service) : m_connector.unprovision(service);
    }
}

} // namespace simulator
