#include "OperationScopes.h"

#include "AutoConnect.h"

ConnectingScope::ConnectingScope(AutoConnect &autoConnect, PreferredNetwork &preferred)
    : m_autoConnect(autoConnect)
    , m_hold(preferred)
{
    m_autoConnect.switchOff();
}

ConnectingScope::~ConnectingScope()
{
    m_autoConnect.switchOn();
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
