#pragma once

#include "Daemon.h"
#include "DaemonClient.h"
#include "FakeDevices.h"
#include "PrivateBus.h"
#include "Surroundings.h"
#include "Text.h"

/// The sentence with the address of the cable.
constexpr int ethernetAddressSentence = 0;

/// A daemon on a device without WLAN, with a wired link, ConnMan and a speech service around it.
struct Scene
{
    Scene();
    /// Stops the daemon and takes the tolerated problems out of its log.
    ~Scene();
    Scene(const Scene &) = delete;
    Scene &operator=(const Scene &) = delete;

    test_support::PrivateBus bus;
    test_support::DaemonClient client{bus.address()};
    Surroundings surroundings{bus.address(), client.connection()};
    test_support::Daemon daemon{bus.address()};
    /// Beginnings of log lines that the daemon rightly writes here, as often as things happen to come; at
    /// first those of a device without WLAN and without an IPv6 address.
    QStringList toleratedProblems;

    const test_support::SpeechRecord &speech() const { return surroundings.speech(); }

    /// Starts the daemon; true once it offers its interface.
    bool startDaemon();
    /// Everything in its place, and true once the daemon knows the address that the DHCP server has given.
    bool bringUp();

    /// The service as the daemon lists it; empty when it does not.
    QVariantMap listedService();
    /// Whether the daemon lists the service with the address that is really set.
    bool daemonKnowsTheLease();
    /// Runs the event loop until the Ethernet LED shows `pattern`.
    bool waitForLed(const test_support::LedPattern &pattern)
    {
        return daemon.sandbox().devices().waitForLed("led10"_s, pattern);
    }
};
