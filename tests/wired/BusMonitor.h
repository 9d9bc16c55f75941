#pragma once

#include "ChildProcess.h"

/// Sees the messages between others on the system bus, as dbus-monitor prints them.
class BusMonitor
{
public:
    /// `rule` is a match rule. Returns when the monitor sees everything that comes from here on.
    explicit BusMonitor(const QString &rule);

    /// Runs the event loop until `text` has been seen `times` times.
    bool waitFor(const QString &text, int times);

private:
    test_support::ChildProcess m_monitor;
    QString m_seen;
};
