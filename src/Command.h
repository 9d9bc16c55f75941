#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

#include <chrono>

/// Running the system's command-line tools, without a shell.
namespace Command {

/// How long "iw" and "ip" may take.
constexpr std::chrono::milliseconds Timeout{30000};

/// Waits for a started process to end. One that is still running after `timeout` is killed. False when it
/// could not be started or did not end in time.
bool waitForEnd(QProcess &process, std::chrono::milliseconds timeout);

/// Like waitForEnd(), and it did not crash. The exit code does not count.
bool endsNormally(QProcess &process, std::chrono::milliseconds timeout = Timeout);

/// Starts a program in a process of its own; true when it ends normally in time.
bool run(const QString &program, const QStringList &arguments);

} // namespace Command
