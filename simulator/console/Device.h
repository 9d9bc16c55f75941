#pragma once

#include "Daemon.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"
#include <QDBusConnection>

/// The printer on the desk: a private bus, the simulated surroundings on it, and the real daemon in a sandbox
/// with LEDs, a keyboard and files of its own. The daemon's "connmanctl" is the real one; its "iw" and "ip"
/// are stand-ins that only tell how they were called.
class Device
{
public:
    Device();
    ~Device();
    Q_DISABLE_COPY_MOVE(Device)

    /// Whether the bus and the simulator run; a critical line has told what is wrong if not.
    bool isReady() const;

    QDBusConnection connection() const { return m_connection; }
    test_support::SimulatorClient &simulator() { return m_simulator; }
    test_support::Daemon &daemon() { return m_daemon; }
    test_support::DaemonSandbox &sandbox() { return m_daemon.sandbox(); }

private:
    test_support::PrivateBus m_bus;
    QDBusConnection m_connection;
    test_support::SimulatorClient m_simulator;
    test_support::Daemon m_daemon;
};
