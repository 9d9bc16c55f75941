#include "Command.h"

namespace Command {

bool waitForEnd(QProcess &process, std::chrono::milliseconds timeout)
{
    // Qt counts waiting for a process that has already ended as a failure.
    if (process.state() == QProcess::NotRunning) {
        return process.error() != QProcess::FailedToStart;
    }
    if (process.waitForFinished(static_cast<int>(timeout.count()))) {
        return true;
    }
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished();
    }
    return false;
}

bool endsNormally(QProcess &process, std::chrono::milliseconds timeout)
{
    return waitForEnd(process, timeout) && process.exitStatus() == QProcess::NormalExit;
}

bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return endsNormally(process);
}

} // namespace Command
