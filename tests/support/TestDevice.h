#pragma once

#include "Daemon.h"
#include "DaemonClient.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"

namespace test_support {

/// A daemon with nothing but a bus of its own and one client.
struct LonelyDaemon
{
    explicit LonelyDaemon(const BusLimits &limits = {})
        : bus(limits)
    {
    }

    PrivateBus bus;
    DaemonClient client{bus.address()};
    Daemon daemon{bus.address()};

    /// Starts the daemon; true once it offers its interface.
    bool start(const QStringList &arguments = {});
};

/// A daemon with the whole simulated device around it.
struct TestDevice
{
    PrivateBus bus;
    SimulatorClient simulator{bus.address()};
    DaemonClient client{bus.address()};
    Daemon daemon{bus.address()};

    /// Starts the daemon; true once it offers its interface.
    bool start(const QStringList &arguments = {});
    /// The same, and true once it has loaded ConnMan's services.
    bool startAndAttach();
    /// Makes ConnMan report that a service is in a state, at once: the service and its interface's state
    /// follow together, where a change of "State" alone reaches the interface only two seconds later.
    void reportState(const QString &identifier, const QString &state);
    /// Makes ConnMan announce that nothing has changed, as it does at times.
    void announceNothing();
    /// Makes the board one without Wi-Fi hardware, which the daemon complains about once when it attaches. It
    /// then leaves radio, region and MAC address alone; a Wi-Fi technology that ConnMan has all the same
    /// works as ever.
    void removeRadio();
    /// startAndAttach() on a board without Wi-Fi hardware: no region command or power cycle runs in the
    /// background.
    bool startWithoutRadio();

    FakeCommands &commands() { return daemon.sandbox().commands(); }
    FakeDevices &devices() { return daemon.sandbox().devices(); }
    DaemonLog &log() { return daemon.log(); }
};

} // namespace test_support
