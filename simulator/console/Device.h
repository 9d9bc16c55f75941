#pragma once

#include "Daemon.h"
#include "PrivateBus.h"
#include "Scenery.h"
#include <QDBusConnection>

/// The printer on the desk: a private bus, the scenery on it, and the real daemon in a sandbox with
/// LEDs, a keyboard and files of its own. The daemon's "connmanctl" is the real one; its "iw" and "ip" are
/// fakes that only tell how they were called.
class Device
{
public:
    Device();
    ~Device();
    Q_DISABLE_COPY_MOVE(Device)

    /// Whether the bus and the scenery are there; a critical line has told what is wrong if not.
    bool isReady() const;

    /// Whether the daemon runs but does not offer its interface yet.
    bool isStarting() const;
    QString busAddress() const { return m_bus.address(); }

    /// Ends the daemon and returns when everything that it still had to say has been told.
    void switchOff();

    QDBusConnection connection() const { return m_connection; }
    Scenery &scenery() { return m_scenery; }
    test_support::Daemon &daemon() { return m_daemon; }
    test_support::DaemonSandbox &sandbox() { return m_daemon.sandbox(); }

private:
    test_support::PrivateBus m_bus;
    QDBusConnection m_connection;
    Scenery m_scenery;
    test_support::Daemon m_daemon;
};
