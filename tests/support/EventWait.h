#pragma once

#include <functional>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFileSystemWatcher>
#include <QTimer>

namespace test_support {

/// How long a test waits for what must come; generous, because machines that run tests are busy.
constexpr int eventTimeoutMs = 30000;

/// Runs the event loop until `condition` holds, looking again after every event: what makes the condition
/// come true has to arrive as one (a signal, a watched file, a process's output). False when it did not hold
/// in time.
template <typename Condition>
bool waitUntil(Condition condition, int timeoutMs = eventTimeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    QTimer wakeUpAtDeadline;
    wakeUpAtDeadline.setTimerType(Qt::PreciseTimer); // a coarse one may come early, and then once more, late
    wakeUpAtDeadline.start(timeoutMs);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

/// The same for a condition about the content of files (or directories).
template <typename Condition>
bool waitUntilFilesSatisfy(const QStringList &files, Condition condition, int timeoutMs = eventTimeoutMs)
{
    QFileSystemWatcher watcher(files);
    return waitUntil(condition, timeoutMs);
}

/// The same for what no event announces (the kernel's state, other programs' output), in a machine that may
/// be an emulated one: looks again every `intervalMs`.
bool eventually(const std::function<bool()> &condition, int timeoutMs = 4 * eventTimeoutMs,
                int intervalMs = 100);

} // namespace test_support
