#pragma once

#include "Program.h"

#include <QDBusMessage>
#include <QObject>
#include <QVariant>

/// The built daemon: its process, its interface on the bus, and the signals it has sent.
class Daemon : public QObject
{
    Q_OBJECT
public:
    explicit Daemon(const QString &keyboardDevice);

    /// Starts it and waits until it owns its bus name.
    bool startAndWait();
    bool stopAndWait();
    bool isRunning() const { return m_program->isRunning(); }
    /// What it has logged since the mark.
    QString log() const { return m_program->log(); }
    void markLog() { m_program->markLog(); }

    /// The reply's value as plain maps and lists; invalid when no reply came or it was a D-Bus error.
    QVariant call(const QString &method, const QVariantList &arguments = {});
    /// Starts a call whose answer nobody waits for.
    void begin(const QString &method, const QVariantList &arguments = {});

    /// The signals since the last `forgetSignals()`, in order, as "name(argument, argument)".
    QStringList received() const { return m_received; }
    bool hasSent(const QString &signal) const { return m_received.contains(signal); }
    void forgetSignals() { m_received.clear(); }

private slots:
    void record(const QDBusMessage &signal);

private:
    std::unique_ptr<Program> m_program;
    QStringList m_received;
};
