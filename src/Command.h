#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

#include <chrono>
#include <memory>

/// Running the system's command-line tools, without a shell.
namespace Command {

/// How long "iw" and "ip" may take.
constexpr std::chrono::milliseconds Timeout{30000};

/// A command that does not outlive the daemon, however that ends.
class Process : public QProcess
{
protected:
    void setupChildProcess() override;
};

/// Deletes a process that has ended; one that still has not, though it was killed, as soon as it does.
struct Release
{
    void operator()(Process *process) const;
};
using ProcessPointer = std::unique_ptr<Process, Release>;

/// Starts a program. Whether it could be started shows in how it ends.
ProcessPointer start(const QString &program, const QStringList &arguments,
                     QProcess::ProcessChannelMode channels = QProcess::SeparateChannels);

/// Waits for a started process to end. One that is still running after `timeout` is killed, and then waited
/// for no longer than one second more. False when it could not be started or did not end in time.
bool waitForEnd(QProcess &process, std::chrono::milliseconds timeout);

/// Like waitForEnd(), and it did not crash. The exit code does not count.
bool endsNormally(QProcess &process, std::chrono::milliseconds timeout = Timeout);

/// Starts a program in a process of its own; true when it ends normally in time.
bool run(const QString &program, const QStringList &arguments);

} // namespace Command
