// The agent's part in connecting: ConnMan asks it for credentials and tells it what came of them.

#include "Connector.h"
#include "ConnmanErrors.h"
#include "ConnmanWire.h"
#include "Discovery.h"
#include "Neighbourhood.h"
#include "ServiceList.h"
#include "ServiceStates.h"
#include "Timings.h"
#include <utility>

namespace simulator {

std::optional<ErrorReply> Connector::askAgent(const ServicePtr &service)
{
    const QString asking = client(*service);
    // The Connect of a hidden network is answered for the network it turns out to be.
    const std::optional<Call> hiddenConnect =
        service->isHidden() ? std::exchange(service->pendingConnect, std::nullopt) : std::nullopt;
    const bool isAsked = m_parts.agents.call(asking, service->identifier, QStringLiteral("RequestInput"),
                                             {QVariant::fromValue(QDBusObjectPath(service->path())),
                                              QVariant::fromValue(requestedFields(*service))},
                                             [this, service, hiddenConnect](const AgentReply &reply) {
                                                 takeAnswer(service, reply, hiddenConnect);
                                             });
    if (isAsked) {
        ++m_openRequests;
        return std::nullopt;
    }
    if (hiddenConnect) {
        service->pendingConnect = hiddenConnect;
    }
    return error::notRegistered;
}

void Connector::takeAnswer(const ServicePtr &service, const AgentReply &reply,
                           const std::optional<Call> &hiddenConnect)
{
    --m_openRequests;
    const Credentials credentials = readAnswer(reply);
    if (service->isHidden()) {
        searchHidden(service, credentials, hiddenConnect);
    } else if (credentials.refusal) {
        endRequest(service, *credentials.refusal);
    } else {
        useCredentials(service, credentials);
    }
}

void Connector::useCredentials(const ServicePtr &service, const Credentials &credentials)
{
    if (credentials.wpsPin) {
        if (!isUsablePin(*credentials.wpsPin)) {
            refuseCredentials(service);
            return;
        }
        service->useWps = true;
        service->pin = *credentials.wpsPin;
    }
    service->identity = credentials.identity.value_or(service->identity);
    if (credentials.passphrase) {
        if (!isUsablePassphrase(*service, *credentials.passphrase)) {
            refuseCredentials(service);
            return;
        }
        service->passphrase = *credentials.passphrase;
    }
    m_parts.states.setError(*service, {});
    if (const std::optional<ErrorReply> refusal = start(service, ConnectReason::User)) {
        service->refuseConnect(*refusal);
    }
}

// Refused without having been tried, so there is no link to take down: the agent may say "Retry".
void Connector::refuseCredentials(const ServicePtr &service)
{
    static const QString retry = QStringLiteral("net.connman.Agent.Error.Retry");
    m_parts.states.fail(*service, connman::invalidKey);
    reportError(service, [this, service](const AgentReply &reply) {
        if (reply.error.name == retry) {
            if (const std::optional<ErrorReply> refusal = start(service, ConnectReason::User)) {
                service->refuseConnect(*refusal);
            }
        } else {
            m_parts.states.becomeIdle(*service);
            complete(service);
        }
    });
}

void Connector::endRequest(const ServicePtr &service, const ErrorReply &error)
{
    service->properties.insert(QStringLiteral("State"), QStringLiteral("idle"));
    service->refuseConnect(error);
    complete(service);
}

void Connector::searchHidden(const ServicePtr &service, const Credentials &credentials,
                             const std::optional<Call> &connect)
{
    constexpr int longestName = 32;
    const int length = credentials.name.value_or(QString()).toUtf8().size();
    if (credentials.refusal || length == 0 || length > longestName) {
        service->pendingConnect = connect;
        service->refuseConnect(credentials.refusal.value_or(error::invalidArguments));
        return;
    }
    later(this, service, m_parts.timings.scan,
          [this, service, credentials, connect] { joinFound(service, credentials, connect); });
}

void Connector::joinFound(const ServicePtr &service, const Credentials &credentials,
                          const std::optional<Call> &connect)
{
    const AccessPoint *accessPoint = m_parts.neighbourhood.find(*credentials.name);
    const bool isFound = accessPoint != nullptr && service->hasSecurity(accessPoint->security);
    const ServicePtr found = isFound ? m_parts.discovery.named(*accessPoint) : service;
    found->pendingConnect = connect;
    if (!isFound) {
        found->refuseConnect(error::failed);
    } else if (credentials.passphrase && !isUsablePassphrase(*found, *credentials.passphrase)) {
        m_parts.states.fail(*found, connman::invalidKey);
        found->refuseConnect(error::passphraseRequired);
    } else {
        freeInterface(found);
        useCredentials(found, credentials);
    }
}

bool Connector::reportError(const ServicePtr &service, const AgentRegistry::Answer &answer)
{
    return m_parts.agents.call(client(*service), service->identifier, QStringLiteral("ReportError"),
                               {QVariant::fromValue(QDBusObjectPath(service->path())), service->error()},
                               answer);
}

QString Connector::client(const Service &service) const
{
    return service.pendingConnect ? service.pendingConnect->sender() : QString();
}

} // namespace simulator
