#pragma once

#include "EventWait.h"
#include "Scene.h"

/// What the tests of the cable's address have in common.
namespace scene {

using test_support::LedPattern;
using test_support::TestDevice;

/// Logged once a tick while IPv6 has no address.
const QString noIpv6Address = "ConnmanService.properties|critical|Missing property \"Address\""_s;
constexpr int tickMs = 2000;

inline QVariantMap address(const QString &method, const QString &text)
{
    return {{"Method"_s, method}, {"Address"_s, text}};
}

/// A device with a cable whose service has a link-local address and no IPv6 address.
struct Wired : TestDevice
{
    Wired()
    {
        simulator.addService(cable, {{"AutoConnect"_s, false}});
        setIpv4("169.254.10.20"_s);
        log().tolerate(noIpv6Address);
    }

    void setIpv4(const QString &text)
    {
        simulator.setServiceProperty(cable, "IPv4"_s, address("dhcp"_s, text));
    }
    void setIpv6(const QString &text)
    {
        simulator.setServiceProperty(cable, "IPv6.Configuration"_s, address("auto"_s, text));
    }
    void ready() { reportState(cable, "ready"_s); }
    /// Looks for an address that found none.
    int ticks() { return log().lines().count(noIpv6Address); }
    bool waitForTicks(int count)
    {
        // One after the other: all of them together take longer than a single wait may.
        bool ticking = true;
        for (int tick = 1; tick <= count && ticking; ++tick) {
            ticking = log().waitFor(noIpv6Address, tick);
        }
        return ticking;
    }
    bool waitForSpeech(const QStringList &sentences)
    {
        return test_support::waitUntil([&] { return spoken(simulator) == sentences; });
    }
    /// Whether nothing more is said while a tick would have passed.
    bool staysSilent()
    {
        const int said = simulator.speech().size();
        return !test_support::waitUntil([&] { return simulator.speech().size() > said; }, tickMs * 3 / 2);
    }
};

inline QString ipv4Sentence()
{
    return sentence(0, {"192"_s, "168"_s, "1"_s, "7"_s});
}

} // namespace scene
