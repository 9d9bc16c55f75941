#pragma once

#include "ChildProcess.h"
#include <QStringList>

namespace test_support {

/// A program as a script runs it: its standard input, output and error are pipes.
class PipedProgram
{
public:
    /// Starts it.
    PipedProgram(const QString &program, const QStringList &arguments);

    void type(const QString &input) { m_process.write(input.toUtf8()); }
    void closeInput() { m_process.closeWriteChannel(); }
    void sendSignal(int signal) const;
    /// Runs the event loop until standard output or standard error holds `text`.
    bool waitForOutput(const QString &text);
    bool waitForErrors(const QString &text);
    /// Runs the event loop until it has ended, and returns the exit status; -1 when it did not end in time or
    /// crashed.
    int waitForExit();

    /// What it has written so far.
    QString output() const { return QString::fromUtf8(m_output); }
    QString errors() const { return QString::fromUtf8(m_errors); }

private:
    QByteArray m_output;
    QByteArray m_errors;
    ChildProcess m_process;
};

} // namespace test_support
