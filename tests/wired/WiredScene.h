#pragma once

#include "Daemon.h"
#include "DaemonClient.h"
#include "FakeDevices.h"
#include "PrivateBus.h"
#include "SpeechRecorder.h"
#include "WiredLink.h"

/// A daemon on a device without WLAN, with a real wired link and the real ConnMan around it.
struct WiredScene
{
    WiredScene();
    /// Stops the daemon and takes the tolerated problems out of its log.
    ~WiredScene();
    WiredScene(const WiredScene &) = delete;
    WiredScene &operator=(const WiredScene &) = delete;

    test_support::PrivateBus bus;
    test_support::DaemonClient client{bus.address()};
    SpeechRecorder speech{client.connection()};
    WiredLink link{client.connection()};
    test_support::Daemon daemon{bus.address()};
    /// Beginnings of log lines that the daemon rightly writes here, as often as things happen to come; at
    /// first those of a device without WLAN and without an IPv6 address.
    QStringList toleratedProblems;

    /// Starts the daemon; true once it offers its interface.
    bool startDaemon();
    /// Everything in its place, and true once the daemon knows the address that the DHCP server has given.
    bool bringUp();

    /// The service as the daemon lists it; empty when it does not.
    QVariantMap listedService();
    /// Whether the daemon lists the service with the address that the kernel has on the interface.
    bool daemonKnowsTheLease();
    /// Runs the event loop until the Ethernet LED shows `pattern`.
    bool waitForLed(const test_support::LedPattern &pattern)
    {
        return daemon.sandbox().devices().waitForLed(QStringLiteral("led10"), pattern);
    }
};

/// A dictionary inside a dictionary from the bus, which arrives as a raw argument.
QVariantMap subMap(const QVariantMap &map, const QString &key);
