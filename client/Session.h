#pragma once

#include "ExitStatus.h"
#include <QEventLoop>
#include <QObject>

class Client;
class Interrupts;
class LineReader;
struct Command;

/// The client without a command: it takes them from standard input, one after the other.
class Session : public QObject
{
    Q_OBJECT
public:
    Session(Client &client, LineReader &reader, Interrupts &interrupts, QObject *parent = nullptr);

    /// Until "exit" or the end of the input; the status of the last command, or of the worst where they come
    /// from no terminal.
    ExitStatus run();

private:
    void carryOutLine(const QString &line);
    void interrupt(int signalNumber);
    void note(ExitStatus status);

    Client &m_client;
    LineReader &m_reader;
    QEventLoop m_loop;
    ExitStatus m_status = Done;
    bool m_isAtPrompt = false;
};
