#pragma once

#include "ChildProcess.h"
#include <QStringList>

/// network-managerctl as a script runs it: its input is a pipe, and so is its output.
class ClientProgram
{
public:
    /// Where it is.
    static QString path();

    /// Starts it; with `input`, if any, its standard input is closed behind that.
    explicit ClientProgram(const QStringList &arguments, const QString &input = {});

    void interrupt() const;
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
    test_support::ChildProcess m_process;
};
