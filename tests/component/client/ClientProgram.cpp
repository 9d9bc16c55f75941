#include "ClientProgram.h"

#include "EventWait.h"
#include <csignal>

using test_support::waitUntil;

QString ClientProgram::path()
{
    return QStringLiteral(CLIENT_PROGRAM);
}

ClientProgram::ClientProgram(const QStringList &arguments, const QString &input)
{
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process,
                     [this] { m_output += m_process.readAllStandardOutput(); });
    QObject::connect(&m_process, &QProcess::readyReadStandardError, &m_process,
                     [this] { m_errors += m_process.readAllStandardError(); });
    m_process.start(path(), arguments);
    m_process.write(input.toUtf8());
    m_process.closeWriteChannel();
}

void ClientProgram::interrupt() const
{
    kill(static_cast<pid_t>(m_process.processId()), SIGINT);
}

bool ClientProgram::waitForOutput(const QString &text)
{
    return waitUntil([&] { return output().contains(text); });
}

bool ClientProgram::waitForErrors(const QString &text)
{
    return waitUntil([&] { return errors().contains(text); });
}

int ClientProgram::waitForExit()
{
    const bool hasEnded = waitUntil([this] { return m_process.state() == QProcess::NotRunning; });
    return hasEnded && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}
