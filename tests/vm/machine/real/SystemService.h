#pragma once

#include "Program.h"

/// A unit of the machine's systemd; what it writes is in the journal.
class SystemService : public Program
{
public:
    /// The unit's name without ".service".
    explicit SystemService(const QString &name);

    bool start() override;
    bool stop() override;
    bool isRunning() const override;
    QString log() const override;
    void markLog() override;

private:
    QString m_unit;
    qint64 m_mark = 0;
};
