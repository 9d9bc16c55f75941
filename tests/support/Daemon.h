#pragma once

#include "ChildProcess.h"
#include "DaemonLog.h"
#include "DaemonSandbox.h"
#include "Text.h"
#include <QMap>
#include <QObject>
#include <QStringList>

#include <sys/types.h>

namespace test_support {

/// The built daemon, run as a black box in a sandbox of its own.
///
/// When it ends with the object it has to end well: SIGTERM, exit status 0, no problems left in its log; else
/// the current test fails. Its log is printed when the test has failed.
class Daemon : public QObject
{
    Q_OBJECT
public:
    /// `busAddress`: the system bus it will see.
    explicit Daemon(const QString &busAddress, QObject *parent = nullptr);
    ~Daemon() override;

    DaemonSandbox &sandbox() { return m_sandbox; }
    /// Whatever the daemon has written by now is in it: an answer on the bus says that the lines before it
    /// are.
    DaemonLog &log();

    /// Qt's logging rules, separated by ";"; none by default, that is, only critical lines are logged.
    void setLoggingRules(const QString &rules) { setVariable("QT_LOGGING_RULES"_s, rules); }

    /// One more environment variable for the daemon.
    void setVariable(const QString &name, const QString &value) { m_variables[name] = value; }

    /// A command, with its path, that the daemon is started by: the daemon's own words follow it. None by
    /// default.
    void setWrapper(const QStringList &command) { m_wrapper = command; }

    /// Starts it; false when it could not be started. There is no waiting for anything it does.
    bool start(const QStringList &arguments = {});
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    /// The daemon's own process, the one to signal.
    qint64 processId() const;
    bool sendSignal(int signal) const;
    /// Whether a handler of the daemon's own is set for that signal.
    bool catches(int signal) const;
    /// Runs the event loop until it has ended, and returns the exit status: 128 + n when signal n ended it,
    /// -1 when it did not end in time.
    int waitForExit();
    /// SIGTERM; the result is whether it ended with status 0.
    bool stop();
    /// Ends what a daemon that has ended has left running, as the init system does with its unit. A killed
    /// one may leave a child that it was about to turn into a command: that waits for its parent for ever,
    /// and shares the bus connection. The destructor does it, too.
    void endLeftovers();

    QByteArray standardOutput() const { return m_output; }

signals:
    /// It has ended, with the status waitForExit() tells.
    void ended(int exitStatus);

private:
    QStringList environment() const;
    void checkEnd();

    QMap<QString, QString> m_variables;
    QStringList m_wrapper;
    DaemonSandbox m_sandbox;
    DaemonLog m_log;
    QByteArray m_output;
    ChildProcess m_process;
    pid_t m_group = 0; // of the processes; none before the start
};

} // namespace test_support
