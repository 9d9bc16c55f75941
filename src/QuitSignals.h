#pragma once

#include <QSocketNotifier>

/// Ends the event loop normally on SIGTERM or SIGINT. The second such signal has its default effect and ends
/// the process at once, for a loop that a hanging call keeps from turning. One instance per process.
class QuitSignals
{
public:
    QuitSignals();

private:
    QSocketNotifier m_notifier;
};
