#pragma once

#include "Command.h"
#include "DaemonCommands.h"
#include "NetworkNames.h"
#include <QObject>
#include <QSocketNotifier>
#include <QVector>

class Device;
class Feed;

/// Understands commands, one a line.
class Console : public QObject
{
    Q_OBJECT
public:
    Console(Device &device, Feed &feed, QObject *parent = nullptr);

    /// Takes commands from standard input from now on; finished() at its end.
    void readStandardInput();
    /// Carries one out; false when it could not be understood, which the reader has been told.
    bool execute(const QString &line);

signals:
    /// Nothing more is to be done.
    void finished();

private:
    void readAvailable();
    void showHelp();
    void showForms(const QString &name);

    Feed &m_feed;
    NetworkNames m_names;
    DaemonCommands m_daemonCommands;
    QVector<Command> m_commands;
    QSocketNotifier m_input;
    QByteArray m_incomplete;
};
