#include "Session.h"

#include "Client.h"
#include "Interrupts.h"
#include "LineReader.h"
#include "Output.h"
#include "Words.h"
#include <algorithm>
#include <csignal>

namespace {

const QStringList farewells = {QStringLiteral("exit"), QStringLiteral("quit")};

} // namespace

Session::Session(Client &client, LineReader &reader, Interrupts &interrupts, QObject *parent)
    : QObject(parent)
    , m_client(client)
    , m_reader(reader)
{
    connect(&reader, &LineReader::lineEntered, this, &Session::carryOutLine);
    connect(&reader, &LineReader::ended, &m_loop, &QEventLoop::quit);
    connect(&interrupts, &Interrupts::interrupted, this, &Session::interrupt);
    reader.setCompleter([this](const QStringList &words) {
        return continuations(m_client.commands(), words, [this] { return m_client.networkNames(); }) +
               (words.isEmpty() ? farewells : QStringList());
    });
}

ExitStatus Session::run()
{
    if (LineReader::isTerminal()) {
        m_reader.print(QStringLiteral("\"help\" lists the commands, \"exit\" ends."));
    }
    m_isAtPrompt = true;
    m_reader.next();
    m_loop.exec();
    return m_status;
}

void Session::carryOutLine(const QString &line)
{
    m_isAtPrompt = false;
    std::optional<QStringList> words = splitWords(line);
    if (!words) {
        complain(QStringLiteral("A quote is not closed."));
        note(Misused);
    } else if (farewells.contains(words->value(0))) {
        m_loop.quit();
        return;
    } else if (!words->isEmpty()) {
        if (words->first() == QStringLiteral("?")) {
            words->first() = QStringLiteral("help");
        }
        note(m_client.run(*words));
    }
    m_isAtPrompt = true;
    m_reader.next();
}

// A script is not to go on unnoticed after a command that failed; a person has seen it.
void Session::note(ExitStatus status)
{
    m_status = LineReader::isTerminal() ? status : std::max(m_status, status);
}

void Session::interrupt(int signalNumber)
{
    if (signalNumber != SIGINT || !LineReader::isTerminal()) {
        note(Cancelled);
        m_loop.quit();
    } else if (m_isAtPrompt) {
        m_reader.startAnew();
    }
}
