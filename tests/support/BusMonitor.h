#pragma once

#include "ChildProcess.h"

#include <QStringList>

namespace test_support {

/// Sees the messages between others on the system bus, as dbus-monitor prints them.
class BusMonitor
{
public:
    /// `rule` is a match rule. Returns when the monitor sees everything that comes from here on.
    explicit BusMonitor(const QString &rule);

    /// Runs the event loop until `text` has been seen `times` times.
    bool waitFor(const QString &text, int times);
    /// The members of the calls and signals seen so far, in the order in which they passed the bus; those
    /// from and to the bus itself are left out.
    QStringList members() const;

private:
    QString m_seen; // outlives the process, which still prints while it is stopped
    ChildProcess m_monitor;
};

} // namespace test_support
