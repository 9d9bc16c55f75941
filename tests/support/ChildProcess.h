#pragma once

#include <QProcess>

namespace test_support {

/// A process that the kernel ends together with the test, also when the test crashes or is killed.
/// It has a process group of its own, so that a terminal's Ctrl-C reaches the one who started it alone.
/// Start it from the main thread: the kernel watches the thread that started it.
class ChildProcess : public QProcess
{
    Q_OBJECT
public:
    using QProcess::QProcess;
    ~ChildProcess() override;

protected:
    void setupChildProcess() override;
};

/// Ends a process: politely (SIGTERM) first, for good (SIGKILL) if it does not go. Returns when it is gone.
void stopProcess(QProcess &process);

} // namespace test_support
