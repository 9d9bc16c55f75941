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

inline QString errorSignal(const QString &text)
{
    return "error(\"%1\")"_s.arg(text);
}

} // namespace scene
