#include "BusMonitor.h"

#include "EventWait.h"
#include "Text.h"
#include <QRegularExpression>

namespace test_support {

BusMonitor::BusMonitor(const QString &rule)
{
    QObject::connect(&m_monitor, &QProcess::readyReadStandardOutput, &m_monitor,
                     [this] { m_seen += QString::fromUtf8(m_monitor.readAllStandardOutput()); });
    m_monitor.start("dbus-monitor"_s, {"--system"_s, rule});
    // A connection that becomes a monitor loses its name first, and dbus-monitor prints that too.
    if (!waitFor("member=NameLost"_s, 1)) {
        qFatal("No bus monitor: %s", qPrintable(m_monitor.errorString()));
    }
}

bool BusMonitor::waitFor(const QString &text, int times)
{
    return waitUntil([&] { return m_seen.count(text) >= times; });
}

QStringList BusMonitor::members() const
{
    static const QRegularExpression header("^(?:method call|signal) time=\\S+ sender=:\\S+ -> "
                                           "destination=(?!org\\.freedesktop\\.DBus ).*member=(\\w+)$"_s,
                                           QRegularExpression::MultilineOption);
    QStringList members;
    for (auto match = header.globalMatch(m_seen); match.hasNext();) {
        members << match.next().captured(1);
    }
    return members;
}

} // namespace test_support
