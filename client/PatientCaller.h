#pragma once

#include "DaemonInterface.h"
#include <functional>
#include <memory>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <QTimer>

class Interrupts;

/// Calls the daemon and waits for its answer, for as long as it takes, telling on standard error what is
/// waited for.
class PatientCaller : public QObject
{
    Q_OBJECT
public:
    PatientCaller(const QDBusConnection &connection, Interrupts &interrupts, QObject *parent = nullptr);

    struct Request
    {
        QString method;
        QVariantList arguments;
        /// What the daemon does meanwhile: "Connecting Kitchen".
        QString activity;
        /// The network whose disconnecting ends the call early; empty for a call that nothing can end.
        QString cancelledBy;
    };
    struct Outcome
    {
        DaemonAnswer answer;
        /// Why it failed, when the daemon has said so; empty otherwise.
        QString reason;
        /// Whether Ctrl-C came first. There may be no answer then.
        bool isCancelled = false;
    };
    Outcome call(const Request &request);

private:
    void noteSignal(const QString &name, const QVariantList &arguments);
    void tellProgress();
    void interrupt();
    void disconnectNetwork();
    void send(const QString &method, const QVariantList &arguments,
              const std::function<void(const DaemonAnswer &)> &take);

    QDBusConnection m_connection;
    DaemonSignals m_signals;
    QTimer m_progress;
    QElapsedTimer m_waiting;
    QEventLoop m_loop;
    Request m_request;
    Outcome m_outcome;
    /// The owner of the calls that are not answered yet, and their number.
    std::unique_ptr<QObject> m_calls;
    int m_open = 0;
};

/// Whether the text of an "error" signal that came before a call's answer may be about that call: such
/// signals reach every client, whosever call has failed.
bool mayBeAbout(const QString &error, const QString &method, const QVariantList &arguments);
