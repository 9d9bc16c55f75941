#pragma once

#include "OperationsScene.h"

/// What the tests of registering have in common.
namespace scene {

inline QVariantMap network(const QString &ssid, const QString &security)
{
    return {{"ssid"_s, ssid},
            {"security"_s, security},
            {"passphrase"_s, "right secret"_s},
            {"identity"_s, "me"_s},
            {"pin"_s, "12345670"_s}};
}

inline QStringList registered(const QString &method, const QString &identifier)
{
    return {"networkRegistered(\"%1\")"_s.arg(identifier), method + " -> true"_s};
}

/// What ConnMan tells the agent of a failure, in the log.
inline QString reportedError(const QString &identifier, const QString &reason)
{
    return "ConnmanAgent|critical|Error: \"%1\" on service \"%2\""_s.arg(reason, servicePath(identifier));
}

inline void tolerateRefusedRegistration(Operations &device, const QString &identifier, const QString &reason)
{
    device.tolerateRefusedAutoConnect();
    device.log().tolerate(reportedError(identifier, reason));
    device.log().tolerate(failedCall("Connect"_s, identifier));
    device.log().tolerate(failedRegistration(reason));
}

/// What the agent answers to a request for a passphrase now.
inline test_support::SimulatorClient::AgentReply askForPassphrase(test_support::SimulatorClient &simulator)
{
    const QVariantMap fields{
        {"Passphrase"_s, QVariantMap{{"Type"_s, "psk"_s}, {"Requirement"_s, "mandatory"_s}}}};
    return simulator.callAgent("RequestInput"_s, {QVariant::fromValue(QDBusObjectPath(servicePath(den))),
                                                  QVariant::fromValue(fields)});
}

inline QString agentError(test_support::SimulatorClient &simulator)
{
    return askForPassphrase(simulator).error;
}

const QString noRequest = "org.freedesktop.DBus.Error.Failed: No request-type setup."_s;

} // namespace scene
