#pragma once

#include "TestDevice.h"

#include <QStringList>

/// What the simulated machine consists of: a private bus, the simulated device and the daemon's sandbox.
/// There is one in a process, made before anything else; the scenarios' machine acts on it.
class Bench : public test_support::TestDevice
{
public:
    Bench();
    ~Bench();
    Q_DISABLE_COPY_MOVE(Bench)

    static Bench &instance();

    /// Runs one of the programs that the daemon runs, as somebody else on the device would.
    bool run(const QString &program, const QStringList &arguments);
    /// The last argument of the latest command line, whoever ran it, that begins with `command`.
    QString latest(const QString &command);
};
