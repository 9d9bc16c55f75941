#include "Command.h"

#include <csignal>

#include <sys/prctl.h>

namespace Command {

namespace {

/// How long a killed process may take to end.
constexpr int KillTimeoutMs = 1000;

} // namespace

void Process::setupChildProcess()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

void Release::operator()(Process *process) const
{
    if (process->state() == QProcess::NotRunning) {
        delete process;
        return;
    }
    QObject::connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), process,
                     &QObject::deleteLater);
}

ProcessPointer start(const QString &program, const QStringList &arguments,
                     QProcess::ProcessChannelMode channels)
{
    ProcessPointer process(new Process);
    process->setProcessChannelMode(channels);
    process->start(program, arguments);
    return process;
}

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
        process.waitForFinished(KillTimeoutMs);
    }
    return false;
}

bool endsNormally(QProcess &process, std::chrono::milliseconds timeout)
{
    return waitForEnd(process, timeout) && process.exitStatus() == QProcess::NormalExit;
}

bool run(const QString &program, const QStringList &arguments)
{
    return endsNormally(*start(program, arguments));
}

} // namespace Command
