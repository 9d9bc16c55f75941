#pragma once

#include "Text.h"
#include <QDir>
#include <QFile>
#include <QStringList>

namespace test_support {

/// Fakes of the programs that the daemon runs ("iw", "ip", "connmanctl"): they record how they are
/// called and behave as scripted. Unscripted they succeed and print nothing; "iw list" tells of one radio.
class FakeCommands
{
public:
    /// Sets the programs up in `directory`, which must exist.
    explicit FakeCommands(const QString &directory);

    /// The directory to have as the whole PATH.
    QString path() const;
    /// The variable by which the programs find their log and scripts, "NAME=value".
    QString variable() const;
    /// The PATH and that variable.
    QStringList environment() const { return {"PATH="_s + path(), variable()}; }

    /// What happens when a command line begins with `command` (whole words; the longest match counts).
    /// The instructions are explained in fake_command/FakeCommand.cpp.
    void script(const QString &command, const QStringList &instructions);
    /// Puts the machine's own program in the place of the fake.
    void useOwn(const QString &program);
    /// Takes the program off the PATH.
    void removeProgram(const QString &program);
    /// Lets the programs that wait in "hold", now or later, go on.
    void release();

    /// The command lines so far, in the order the programs started.
    QStringList calls() const;
    QString logFile() const;
    void clearCalls();
    /// Runs the event loop until `command` has been called `times` times since the last clearCalls().
    bool waitForCall(const QString &command, int times = 1);

private:
    QDir m_directory;
    QFile m_hold;
};

} // namespace test_support
