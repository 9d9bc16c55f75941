#pragma once

#include "Scene.h"
#include <QRegularExpression>

/// What the tests of the clients' operations have in common.
namespace scene {

using test_support::TestDevice;

const QString den = "wifi_020000000200_44656e_managed_psk"_s;
const QString corp = "wifi_020000000200_436f7270_managed_ieee8021x"_s;

/// Long enough to look at what the daemon did before the call that waits.
constexpr int whileConnmanWaitsMs = 2000;

/// A daemon attached to ConnMan on a board without Wi-Fi hardware of its own, so that nothing but the
/// operation under test happens; ConnMan has a Wi-Fi technology all the same.
struct Operations : TestDevice
{
    bool begin()
    {
        if (!startWithoutRadio()) {
            return false;
        }
        simulator.clearCalls();
        client.clearRecord();
        return true;
    }

    /// The calls that changed something in ConnMan or scanned, in order; reading is left out.
    QStringList changes()
    {
        return simulator.calls().filter(QRegularExpression("\\.(?!GetProperties|GetServices)\\w+\\("_s));
    }

    void tolerateRefusedAutoConnect() { log().tolerate(autoConnectRefused); }
    /// A network that was never connected has no address to keep when it is disconnected.
    void tolerateMissingAddress()
    {
        const QString properties = "ConnmanService.properties|critical|"_s;
        log().tolerate(properties + "Missing property \"Address\""_s);
        log().tolerate(properties + "Missing property \"Gateway\""_s);
        log().tolerate(properties +
                       "Setting property \"IPv4.Configuration\" failed: \"Invalid arguments\""_s);
    }
};

inline QString callOf(const QString &identifier, const QString &call)
{
    return servicePath(identifier) + " net.connman.Service."_s + call;
}

inline QString autoConnect(const QString &identifier, bool on)
{
    return callOf(identifier, "SetProperty(\"AutoConnect\", <%1>)"_s.arg(on ? "true"_s : "false"_s));
}

inline QString write(const QString &identifier, const QString &property, const QString &value)
{
    return callOf(identifier, "SetProperty(\"%1\", <%2>)"_s.arg(property, value));
}

inline QString noSuchNetwork(const QString &identifier)
{
    return "NetworkManager|critical|No such network available: \"%1\""_s.arg(identifier);
}

/// ConnMan's refusal of a call about a network, and the line it leaves.
const QString inputOutputError = "QDBusError(\"net.connman.Error.Failed\", \"Input/output error\")"_s;
inline QString failedCall(const QString &method, const QString &identifier,
                          const QString &error = inputOutputError)
{
    return "ConnmanService|critical|Failed to asynchronously call %1 on \"%2\" : %3"_s.arg(
        method, servicePath(identifier), error);
}

/// A scan that finds nothing.
inline test_support::Fault failingScan(test_support::SimulatorClient &simulator)
{
    return simulator.injectFault(
        "net.connman.Technology"_s, "Scan"_s,
        test_support::FaultKind::error("net.connman.Error.NoCarrier"_s, "No carrier"_s));
}
const QString scanFailed = "ConnmanTechnology|critical|Failed to asynchronously call Scan on "
                           "\"/net/connman/technology/wifi\" : \"No carrier\""_s;

inline QString failedRegistration(const QString &reason)
{
    return "NetworkManager|critical|Failed to register network: \"%1\""_s.arg(reason);
}

inline QString errorSignal(const QString &text)
{
    return "error(\"%1\")"_s.arg(text);
}

} // namespace scene
