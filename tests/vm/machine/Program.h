#pragma once

#include <memory>
#include <QString>

/// A program of the device that scenarios start and stop.
class Program
{
public:
    Program() = default;
    virtual ~Program() = default;
    Q_DISABLE_COPY_MOVE(Program)

    virtual bool start() = 0;
    /// An orderly end; false when it took force.
    virtual bool stop() = 0;
    virtual bool isRunning() const = 0;
    /// What it has written since the mark.
    virtual QString log() const = 0;
    virtual void markLog() = 0;
};

std::unique_ptr<Program> makeConnman();
std::unique_ptr<Program> makeDaemon(const QString &keyboardDevice);
