#pragma once

#include "Text.h"

#include <csignal>
#include <QDBusConnection>
#include <QDBusConnectionInterface>

/// While it lives, the bus answers nobody: whoever waits for it waits until the call times out.
class FrozenBus
{
public:
    explicit FrozenBus(const QDBusConnection &connection)
        : m_daemon(static_cast<pid_t>(connection.interface()->servicePid("org.freedesktop.DBus"_s).value()))
    {
        if (m_daemon <= 0 || kill(m_daemon, SIGSTOP) != 0) {
            qFatal("cannot freeze the bus");
        }
    }
    ~FrozenBus() { kill(m_daemon, SIGCONT); }
    FrozenBus(const FrozenBus &) = delete;
    FrozenBus &operator=(const FrozenBus &) = delete;

    /// Much longer than anything takes that does not wait, much shorter than the 25 s of a call.
    static constexpr int sureSignOfWaitingMs = 10000;

private:
    const pid_t m_daemon;
};
