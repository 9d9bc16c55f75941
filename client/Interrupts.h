#pragma once

#include <QObject>
#include <QSocketNotifier>

/// Makes events of Ctrl-C (SIGINT), SIGTERM and SIGHUP, which then have no other effect. One instance per
/// process.
class Interrupts : public QObject
{
    Q_OBJECT
public:
    explicit Interrupts(QObject *parent = nullptr);

    /// The last such signal since forget(); 0 for none.
    int signalNumber() const { return m_signalNumber; }
    void forget() { m_signalNumber = 0; }

signals:
    void interrupted(int signalNumber);

private:
    void readPipe();

    QSocketNotifier m_pipe;
    int m_signalNumber = 0;
};
