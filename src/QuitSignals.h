#pragma once

#include <QSocketNotifier>

/// Ends the event loop, and with it every nested one, normally on SIGTERM or SIGINT. Where a hanging call or
/// child process keeps the loop from turning, the process ends by itself three seconds later, with status 0
/// too. The second such signal has its default effect and ends it at once. One instance per process.
class QuitSignals
{
public:
    QuitSignals();

private:
    QSocketNotifier m_notifier;
};
