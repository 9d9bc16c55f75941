#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

/// A daemon of the machine, started and stopped by scenarios; its output is appended to
/// /run/results/log/<name>.log.
class Service
{
public:
    Service(const QString &program, const QStringList &arguments);
    ~Service();
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    bool start();
    /// SIGTERM, then SIGKILL; true when SIGTERM sufficed or nothing ran.
    bool stop();
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    /// What it has written since the mark.
    QString log() const;
    void markLog();
    /// Sets an environment variable for the next start.
    void setVariable(const QString &name, const QString &value);

private:
    QString m_logFile;
    qint64 m_mark = 0;
    QProcess m_process;
};
