#pragma once

#include "ConnmanAgent.h"
#include "PreferredNetwork.h"

#include <QString>

class AutoConnect;

/// What an operation holds while it waits for ConnMan to connect a network: ConnMan does not connect any
/// other Wi-Fi network by itself, and the daemon does not try the preferred one. Afterwards ConnMan may
/// connect again, whatever it might before.
class ConnectingScope
{
public:
    ConnectingScope(AutoConnect &autoConnect, PreferredNetwork &preferred);
    ~ConnectingScope();
    ConnectingScope(const ConnectingScope &) = delete;
    ConnectingScope &operator=(const ConnectingScope &) = delete;

private:
    AutoConnect &m_autoConnect;
    PreferredNetwork::Hold m_hold;
};

struct Credentials
{
    QString secret; ///< the passphrase or the WPS PIN
    ConnmanAgent::RequestType type = ConnmanAgent::RequestType::None;
    QString extraName; ///< the hidden network's name or the enterprise identity
};

/// The agent has the credentials as long as this lives. There is one set of them: a second registration
/// inside the wait of the first overwrites it, and then clears it.
class CredentialsScope
{
public:
    /// Without an agent, before ConnMan has been seen, it does nothing.
    CredentialsScope(ConnmanAgent *agent, const QString &networkIdentifier, const Credentials &credentials);
    ~CredentialsScope();
    CredentialsScope(const CredentialsScope &) = delete;
    CredentialsScope &operator=(const CredentialsScope &) = delete;

private:
    ConnmanAgent *m_agent;
};
