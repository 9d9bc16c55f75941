#pragma once

#include "AgentRegistry.h"
#include "ConnmanWire.h"
#include "Service.h"
#include <optional>
#include <QString>

namespace simulator {

/// What an agent said to RequestInput.
struct Credentials
{
    std::optional<QString> name; ///< "Name" or "SSID"
    std::optional<QString> identity;
    std::optional<QString> passphrase;
    std::optional<QString> wpsPin; ///< empty: the push button
    /// Why ConnMan takes none of it.
    std::optional<ErrorReply> refusal;
};

/// The fields of RequestInput for that service, as ConnMan asks for them.
PropertyDict requestedFields(const Service &service);

/// Reads an agent's answer as ConnMan does.
Credentials readAnswer(const AgentReply &reply);

/// Whether the service cannot be joined without asking.
bool needsCredentials(const Service &service);

/// Whether ConnMan would try that passphrase, that WPS PIN at all.
bool isUsablePassphrase(const Service &service, const QString &passphrase);
bool isUsablePin(const QString &pin);

} // namespace simulator
