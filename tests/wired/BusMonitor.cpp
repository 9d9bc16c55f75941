#include "BusMonitor.h"

#include "EventWait.h"

BusMonitor::BusMonitor(const QString &rule)
{
    QObject::connect(&m_monitor, &QProcess::readyReadStandardOutput, &m_monitor,
                     [this] { m_seen += QString::fromUtf8(m_monitor.readAllStandardOutput()); });
    m_monitor.start(QStringLiteral("dbus-monitor"), {QStringLiteral("--system"), rule});
    // A connection that becomes a monitor loses its name first, and dbus-monitor prints that too.
    if (!waitFor(QStringLiteral("member=NameLost"), 1)) {
        qFatal("No bus monitor: %s", qPrintable(m_monitor.errorString()));
    }
}

bool BusMonitor::waitFor(const QString &text, int times)
{
    return test_support::waitUntil([&] { return m_seen.count(text) >= times; });
}
