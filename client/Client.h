#pragma once

#include "Command.h"
#include "DaemonCalls.h"
#include "ExitStatus.h"
#include "NetworkList.h"
#include "NetworkNames.h"
#include "PatientCaller.h"
#include <QDBusConnection>
#include <QObject>

class Interrupts;
class LineReader;

/// The client's commands, each carried out to its end.
class Client : public QObject
{
    Q_OBJECT
public:
    struct Options
    {
        bool json = false;
        bool plain = false; ///< no columns
        bool watch = false; ///< "list" goes on with what happens
    };
    /// Credentials are asked for with `reader`.
    Client(const QDBusConnection &connection, const Options &options, LineReader &reader,
           Interrupts &interrupts, QObject *parent = nullptr);

    const QVector<Command> &commands() const { return m_commands; }
    /// Carries out a command, a name and the words behind it; problems are told on standard error.
    ExitStatus run(const QStringList &words);

    /// What networks can be called; asks the daemon when it has not been asked yet.
    QStringList networkNames();
    /// Of those that are connecting or connected; needs neither a scan nor a change.
    QStringList activeNetworkNames() const;

private:
    ExitStatus perform(const DaemonCall &call, const QStringList &typed);
    ExitStatus monitor();
    bool isReachable() const;
    void showHelp(const QStringList &words);

    bool completeWords(const DaemonCall &call, const QStringList &typed, QStringList &words);
    ExitStatus resolve(QString &network);
    ExitStatus refreshNetworks();
    PatientCaller::Outcome ask(const DaemonCall &call, const DaemonMethod &method, const QStringList &words);
    ExitStatus judge(const DaemonCall &call, const PatientCaller::Outcome &outcome) const;
    void show(const DaemonCall &call, const QVariantList &values);
    QVector<NetworkEntry> remember(const QVariantMap &networks);

    QDBusConnection m_connection;
    const Options m_options;
    LineReader &m_reader;
    Interrupts &m_interrupts;
    PatientCaller m_caller;
    NetworkNames m_names;
    bool m_knowsNetworks = false;
    QVector<Command> m_commands;
    ExitStatus m_status = Done;
};
