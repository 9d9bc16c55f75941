#include "PipedProgram.h"

#include "EventWait.h"
#include <csignal>

namespace test_support {

PipedProgram::PipedProgram(const QString &program, const QStringList &arguments)
{
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process,
                     [this] { m_output += m_process.readAllStandardOutput(); });
    QObject::connect(&m_process, &QProcess::readyReadStandardError, &m_process,
                     [this] { m_errors += m_process.readAllStandardError(); });
    m_process.start(program, arguments);
}

void PipedProgram::sendSignal(int signal) const
{
    kill(static_cast<pid_t>(m_process.processId()), signal);
}

bool PipedProgram::waitForOutput(const QString &text)
{
    return waitUntil([&] { return output().contains(text); });
}

bool PipedProgram::waitForErrors(const QString &text)
{
    return waitUntil([&] { return errors().contains(text); });
}

int PipedProgram::waitForExit()
{
    const bool hasEnded = waitUntil([this] { return m_process.state() == QProcess::NotRunning; });
    return hasEnded && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

} // namespace test_support
