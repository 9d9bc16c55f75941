#include "Connector.h"

#include "Addressing.h"
#include "ConnmanErrors.h"
#include "ConnmanWire.h"
#include "Discovery.h"
#include "Neighbourhood.h"
#include "ServiceList.h"
#include "ServiceStates.h"
#include "Timings.h"

namespace simulator {

namespace {
bool isUsable(const Service &service)
{
    return service.method(connman::ipv4Configuration) != QLatin1String("off") ||
           service.method(connman::ipv6Configuration) != QLatin1String("off");
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
    m_parts.addressing.checkOnline(); // another one may have become the default
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

void Connector::autoConnect()
{
    if (!m_autoConnect.isActive() && m_parts.timings.autoConnect >= 0) {
        m_autoConnect.start(m_parts.timings.autoConnect);
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
        m_parts.addressing.configure(service);
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
        later(this, service, m_parts.timings.association,
              [this, service] { m_parts.addressing.configure(service); });
        break;
    case Verdict::Refused:
        later(this, service, m_parts.timings.wrongPassphrase,
              [this, service] { failToAssociate(service, connman::connectFailed); });
        break;
    case Verdict::WrongPassphrase:
        later(this, service, m_parts.timings.wrongPassphrase * tries,
              [this, service] { failToAssociate(service, connman::invalidKey); });
        break;
    }
    later(this, service, m_parts.timings.connect, [this, service] { giveUp(service); });
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
        later(this, service, m_parts.timings.connect, [this, service] { giveUp(service); });
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

} // namespace simulator
