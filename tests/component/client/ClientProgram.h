#pragma once

#include "PipedProgram.h"
#include <csignal>

/// network-managerctl as a script runs it.
class ClientProgram : public test_support::PipedProgram
{
public:
    /// Where it is.
    static QString path() { return QStringLiteral(CLIENT_PROGRAM); }

    /// Starts it; its standard input is closed behind `input`.
    explicit ClientProgram(const QStringList &arguments, const QString &input = {})
        : PipedProgram(path(), arguments)
    {
        type(input);
        closeInput();
    }

    void interrupt() const { sendSignal(SIGINT); }
};
