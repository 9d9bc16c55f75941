#pragma once

#include "Command.h"
#include "DaemonCommands.h"
#include "LineReader.h"
#include "NetworkNames.h"
#include <QObject>
#include <QVector>

class Device;
class Feed;

/// Understands commands, one a line.
class Console : public QObject
{
    Q_OBJECT
public:
    Console(Device &device, Feed &feed, LineReader &reader, QObject *parent = nullptr);
    ~Console() override;
    Q_DISABLE_COPY_MOVE(Console)

    /// Takes commands from standard input from now on; finished() at its end. From a terminal each is taken
    /// as soon as it is typed, whatever is still going on; otherwise when the one before is over.
    void readStandardInput();
    /// Carries one out; false when it could not be understood, which the reader has been told.
    bool execute(const QString &line);
    /// Whether all that was read could be understood.
    bool understoodAll() const { return m_understoodAll; }

signals:
    /// Nothing more is to be done.
    void finished();

private:
    void executeRead(const QString &line);
    void goOn();
    QStringList completions(const QStringList &words);
    void showHelp();

    Device &m_device;
    Feed &m_feed;
    LineReader &m_reader;
    NetworkNames m_names;
    DaemonCommands m_daemonCommands;
    QVector<Command> m_commands;
    bool m_isWaiting = false;
    bool m_understoodAll = true;
};
