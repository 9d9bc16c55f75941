#include "OperationScopes.h"

#include "ConnmanNames.h"
#include "NetworkManagerLog.h"
#include "ServiceLookup.h"

namespace {

void setAutoConnect(const ServiceLookup &lookup, bool on)
{
    const QList<ServiceLookup::Service> all = lookup.services();
    for (const ServiceLookup::Service &service : all) {
        const QString type = service->type();
        if (type == ConnmanNames::Wifi) {
            service->setAutoConnect(on);
        } else {
            qCDebug(logNetworkManager) << "Skipping network of type" << type;
        }
    }
}

} // namespace

ConnectingScope::ConnectingScope(const ServiceLookup &lookup, PreferredNetwork &preferred)
    : m_lookup(lookup)
    , m_hold(preferred)
{
    setAutoConnect(m_lookup, false);
}

ConnectingScope::~ConnectingScope()
{
    setAutoConnect(m_lookup, true);
}

CredentialsScope::CredentialsScope(ConnmanAgent *agent, const QString &networkIdentifier,
                                   const Credentials &credentials)
    : m_agent(agent)
{
    if (m_agent) {
        m_agent->setRequest(networkIdentifier, credentials.secret, credentials.type, credentials.extraName);
    }
}

CredentialsScope::~CredentialsScope()
{
    if (m_agent) {
        m_agent->setRequest({}, {}, ConnmanAgent::RequestType::None, {});
    }
}
