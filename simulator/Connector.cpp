#include "Connector.h"

#include "ConnmanErrors.h"
#include "ConnmanWire.h"
#include "Discovery.h"
#include "Neighbourhood.h"
#include "ServiceList.h"
#include "ServiceStates.h"
#include "Timings.h"

namespace simulator {

namespace {
const QString ipv4Configuration = QStringLiteral("IPv4.Configuration");
const QString ipv6Configuration = QStringLiteral("IPv6.Configuration");

bool isUsable(const Service &service)
{
    return service.method(ipv4Configuration) != QLatin1String("off") ||
           service.method(ipv6Configuration) != QLatin1String("off");
}
} // namespace

Connector::Connector(Parts parts, QObject *parent)
    : QObject(parent)
    , m_parts(parts)
{
    m_autoConnect.setSingleShot(true);
    QObject::connect(&m_autoConnect, &QTimer::timeout, this, &Connector::runAutoConnect);
}

void Connector::connectService(const ServicePtr &service, const Call &call)
{
    if (service->pendingConnect) {
        call.refuse(error::inProgress);
        return;
    }
    freeInterface(service);
    service->ignored = false;
    service->pendingConnect = call;
    if (const std::optional<ErrorReply> refusal = start(service, ConnectReason::User)) {
        service->refuseConnect(*refusal);
    }
}

std::optional<ErrorReply> Connector::disconnectService(const ServicePtr &service)
{
    service->reason = ConnectReason::None;
    m_parts.agents.cancel(service->identifier);
    if (service->isIdle()) {
        return error::notConnected;
    }
    ++service->attempt;
    m_parts.states.disconnect(*service);
    for (const ServicePtr &other : m_parts.services.all()) {
        checkOnline(other); // another one may have become the default
    }
    autoConnect();
    return std::nullopt;
}

std::optional<ErrorReply> Connector::removeService(const ServicePtr &service)
{
    const bool isRemovable = service->isWifi() && !service->isImmutable() && !service->isHidden() &&
                             (service->isFavorite() || service->isIdle());
    if (!isRemovable) {
        return error::notSupported;
    }
    forget(service);
    return std::nullopt;
}

void Connector::forget(const ServicePtr &service)
{
    disconnectService(service);
    service->passphrase.clear();
    service->identity.clear();
    service->properties.remove(QStringLiteral("Error"));
    service->properties.insert(QStringLiteral("AutoConnect"), false);
    m_parts.services.change(*service, QStringLiteral("Favorite"), false);
    m_parts.services.sort();
}

void Connector::provision(const ServicePtr &service)
{
    m_parts.services.change(*service, QStringLiteral("Favorite"), true);
    m_parts.services.change(*service, QStringLiteral("Immutable"), true);
    service->properties.insert(QStringLiteral("AutoConnect"), true); // ConnMan does not tell this one
    m_parts.services.sort();
}

void Connector::unprovision(const ServicePtr &service)
{
    m_parts.services.change(*service, QStringLiteral("Immutable"), false);
    forget(service);
}

void Connector::retryAddresses()
{
    for (const ServicePtr &service : m_parts.services.all()) {
        const bool waits = service->state() == QLatin1String("configuration") &&
                           service->method(ipv4Configuration) == QLatin1String("dhcp");
        if (waits) {
            ++service->attempt;
            obtainAddresses(service);
        }
    }
}

void Connector::autoConnect()
{
    if (!m_autoConnect.isActive() && m_parts.timings.autoConnect >= 0) {
        m_autoConnect.start(m_parts.timings.autoConnect);
    }
}

void Connector::reconfigure(const ServicePtr &service)
{
    ++service->attempt;
    if (service->method(ipv4Configuration) == QLatin1String("manual")) {
        becomeReady(service);
    } else if (service->method(ipv4Configuration) == QLatin1String("dhcp")) {
        obtainAddresses(service);
    }
}

void Connector::reconfigureIpv6(const ServicePtr &service)
{
    if (service->isConnected()) {
        m_parts.states.tellIpv6(*service);
    } else if (service->state() == QLatin1String("configuration") && hasIpv6(*service)) {
        becomeReady(service);
    }
}

void Connector::abandon()
{
    m_autoConnect.stop();
    for (const ServicePtr &service : m_parts.services.all()) {
        ++service->attempt;
        service->pendingConnect.reset();
        if (!service->isConnected()) {
            service->properties.insert(QStringLiteral("State"), QStringLiteral("idle"));
        }
    }
    m_openRequests = 0;
}

std::optional<ErrorReply> Connector::start(const ServicePtr &service, ConnectReason reason)
{
    if (service->isConnected()) {
        return error::alreadyConnected;
    }
    if (service->isConnecting()) {
        return error::inProgress;
    }
    if (!isUsable(*service)) {
        return error::noCarrier;
    }
    if (service->state() == QLatin1String("failure")) {
        m_parts.states.becomeIdle(*service);
    }
    service->reason = reason;
    if (m_parts.neighbourhood.lacksProvisioning(*service)) {
        return error::invalidArguments;
    }
    if (needsCredentials(*service)) {
        return reason == ConnectReason::User ? askAgent(service) : error::passphraseRequired;
    }
    ++service->attempt;
    if (service->isWifi()) {
        associate(service);
    } else {
        configure(service);
        service->answerConnect(); // a wire needs no association: ConnMan calls that connected
    }
    return std::nullopt;
}

// One radio, one network: what it is connected to makes way.
void Connector::freeInterface(const ServicePtr &service)
{
    const QVector<ServicePtr> services = m_parts.services.all();
    for (const ServicePtr &other : services) {
        if (other != service && other->type() == service->type() && !other->isIdle()) {
            disconnectService(other);
        }
    }
}

void Connector::associate(const ServicePtr &service)
{
    // A favourite's passphrase is tried twice before it counts as wrong.
    const int tries = service->isFavorite() ? 2 : 1;
    m_parts.states.associate(*service);
    switch (m_parts.neighbourhood.verdict(*service)) {
    case Verdict::Accepted:
        later(service, m_parts.timings.association, [this, service] { configure(service); });
        break;
    case Verdict::Refused:
        later(service, m_parts.timings.wrongPassphrase,
              [this, service] { failToAssociate(service, connman::connectFailed); });
        break;
    case Verdict::WrongPassphrase:
        later(service, m_parts.timings.wrongPassphrase * tries,
              [this, service] { failToAssociate(service, connman::invalidKey); });
        break;
    }
    later(service, m_parts.timings.connect, [this, service] { giveUp(service); });
}

void Connector::configure(const ServicePtr &service)
{
    m_parts.states.configure(*service);
    if (service->method(ipv4Configuration) == QLatin1String("manual")) {
        becomeReady(service);
    } else {
        obtainAddresses(service);
    }
}

void Connector::obtainAddresses(const ServicePtr &service)
{
    const bool hasDhcp = m_parts.neighbourhood.lease(*service).has_value();
    if (!hasDhcp && hasIpv6(*service)) { // an IPv6 address is enough, and no other is looked for any more
        later(service, m_parts.timings.configuration, [this, service] { becomeReady(service); });
        return;
    }
    const int wait = hasDhcp ? m_parts.timings.configuration : m_parts.timings.linkLocal;
    later(service, wait, [this, service, hasDhcp] {
        if (!hasDhcp) {
            m_parts.services.set(*service, ipv4Configuration,
                                 QVariantMap{{QStringLiteral("Method"), QStringLiteral("auto")}});
        }
        becomeReady(service);
    });
}

bool Connector::hasIpv6(const Service &service) const
{
    const QString method = service.method(ipv6Configuration);
    return method == QLatin1String("manual") ||
           (method == QLatin1String("auto") && !m_parts.neighbourhood.ipv6Address(service).isEmpty());
}

void Connector::becomeReady(const ServicePtr &service)
{
    ++service->attempt; // the attempt has ended: its time limit with it
    m_parts.states.becomeReady(*service);
    checkOnline(service);
}

// ConnMan looks for the internet over the default connection only.
void Connector::checkOnline(const ServicePtr &service)
{
    if (m_parts.timings.online < 0 || service->state() != QLatin1String("ready") || !isDefault(service)) {
        return;
    }
    later(service, m_parts.timings.online, [this, service] {
        if (service->state() == QLatin1String("ready") && isDefault(service)) {
            m_parts.states.becomeOnline(*service);
        }
    });
}

bool Connector::isDefault(const ServicePtr &service) const
{
    const QVector<ServicePtr> &services = m_parts.services.all();
    return !services.isEmpty() && services.first() == service;
}

// The link is down at once, so the question whether to try again is taken back before anybody can have
// answered.
void Connector::failToAssociate(const ServicePtr &service, const QString &error)
{
    ++service->attempt;
    m_parts.states.fail(*service, error);
    if (service->reason != ConnectReason::User) {
        complete(service);
        return;
    }
    const bool isReported = reportError(service, [this, service](const AgentReply &) { complete(service); });
    service->reason = ConnectReason::None;
    m_parts.states.becomeIdle(*service);
    m_parts.agents.cancel(service->identifier);
    if (!isReported) {
        later(service, m_parts.timings.connect, [this, service] { giveUp(service); });
    }
}

void Connector::giveUp(const ServicePtr &service)
{
    ++service->attempt;
    if (!service->isIdle()) {
        m_parts.states.disconnect(*service);
    }
    service->refuseConnect(error::operationTimeout);
    m_parts.states.fail(*service, {});
}

void Connector::complete(const ServicePtr &service)
{
    service->refuseConnect(error::failed);
    if (service->reason != ConnectReason::User) {
        autoConnect();
    }
}

bool Connector::mayConnectByItself(const Service &service)
{
    return service.isFavorite() && service.connectsByItself() && !service.ignored && isUsable(service) &&
           service.state() == QLatin1String("idle");
}

// In ConnMan's order of services: the first favourite that may, and none while something is connected, but
// for the cable, which is connected whatever else is.
void Connector::runAutoConnect()
{
    const ServicePtr cable = m_parts.services.find(cableIdentifier());
    if (cable != nullptr && mayConnectByItself(*cable)) {
        start(cable, ConnectReason::Auto);
        return;
    }
    if (m_openRequests > 0) {
        return;
    }
    const QVector<ServicePtr> services = m_parts.services.all();
    for (const ServicePtr &service : services) {
        if (service->pendingConnect || !service->isIdle() || !service->isFavorite()) {
            return;
        }
        if (mayConnectByItself(*service)) {
            start(service, ConnectReason::Auto);
            return;
        }
    }
}

void Connector::later(const ServicePtr &service, int milliseconds, const std::function<void()> &step)
{
    QTimer::singleShot(milliseconds, this, [service, attempt = service->attempt, step] {
        if (service->attempt == attempt) {
            step();
        }
    });
}

} // namespace simulator
