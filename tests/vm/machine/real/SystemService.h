#pragma once

#include "Program.h"

#include <QProcess>
#include <QStringList>

/// A process of the machine; its output is appended to /run/results/log/<name>.log.
class SystemService : public Program
{
public:
    SystemService(const QString &program, const QStringList &arguments);
    ~SystemService() override;

    bool start() override;
    /// SIGTERM, then SIGKILL.
    bool stop() override;
    bool isRunning() const override { return m_process.state() == QProcess::Running; }
    QString log() const override;
    void markLog() override;
    /// Sets an environment variable for the next start.
    void setVariable(const QString &name, const QString &value);

private:
    bool end();

    QString m_logFile;
    qint64 m_mark = 0;
    QProcess m_process;
};
