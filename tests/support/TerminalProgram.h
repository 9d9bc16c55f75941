#pragma once

#include "ChildProcess.h"
#include <memory>
#include <QObject>
#include <QSocketNotifier>
#include <QStringList>

namespace test_support {

/// A program on a terminal of its own (a pseudo-terminal), and somebody who types and reads there.
class TerminalProgram : public QObject
{
    Q_OBJECT
public:
    explicit TerminalProgram(QObject *parent = nullptr);
    ~TerminalProgram() override;
    Q_DISABLE_COPY_MOVE(TerminalProgram)

    /// One more environment variable for the program.
    void setVariable(const QString &name, const QString &value);
    /// Starts it; false when it could not be started.
    bool start(const QString &program, const QStringList &arguments = {});

    /// Types: "\n" is Enter, "\t" Tab, "\x03" Ctrl-C, "\x04" Ctrl-D.
    void type(const QString &text);
    /// Runs the event loop until `text` is shown behind what has been waited for before; false when it was
    /// not in time.
    bool waitFor(const QString &text);
    /// All that has been shown so far, line ends as "\n".
    QString shown() const;
    /// Runs the event loop until it has ended, and returns its exit status; 128 + n when signal n has ended
    /// it, -1 when it did not end in time.
    int waitForExit();

private:
    /// The program's side of the terminal is its standard input, output and error, and its controlling
    /// terminal.
    class Process : public ChildProcess
    {
    public:
        int terminal = -1;

    protected:
        void setupChildProcess() override;
    };

    void read();

    int m_terminal;
    Process m_process;
    std::unique_ptr<QSocketNotifier> m_output;
    QByteArray m_shown;
    int m_read = 0;
};

} // namespace test_support
