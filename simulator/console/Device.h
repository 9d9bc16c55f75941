#pragma once

#include "Daemon.h"
#include "PrivateBus.h"
#include "Surroundings.h"
#include <memory>
#include <QDBusConnection>

/// The printer on the desk: a private bus, its surroundings on it, and the real daemon in a sandbox with
/// LEDs, a keyboard and files of its own. The daemon's "connmanctl" is the real one; its "iw" and "ip" are
/// stand-ins that only tell how they were called.
class Device
{
public:
    enum class Kind { Simulated, Wired };

    explicit Device(Kind kind);
    ~Device();
    Q_DISABLE_COPY_MOVE(Device)

    /// Whether the bus and the surroundings are there; a critical line has told what is wrong if not.
    bool isReady() const;

    /// Whether the daemon runs but does not offer its interface yet.
    bool isStarting() const;
    QString busAddress() const { return m_bus.address(); }

    /// Ends the daemon and returns when everything that it still had to say has been told.
    void switchOff();

    QDBusConnection connection() const { return m_connection; }
    Surroundings &surroundings() const { return *m_surroundings; }
    test_support::Daemon &daemon() { return m_daemon; }
    test_support::DaemonSandbox &sandbox() { return m_daemon.sandbox(); }

private:
    std::unique_ptr<Surroundings> makeSurroundings(Kind kind) const;

    test_support::PrivateBus m_bus;
    QDBusConnection m_connection;
    std::unique_ptr<Surroundings> m_surroundings;
    test_support::Daemon m_daemon;
};
