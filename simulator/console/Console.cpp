#include "Console.h"

#include "ConnmanServices.h"
#include "Device.h"
#include "DeviceCommands.h"
#include "Feed.h"
#include "Words.h"

Console::Console(Device &device, Feed &feed, LineReader &reader, QObject *parent)
    : QObject(parent)
    , m_device(device)
    , m_feed(feed)
    , m_reader(reader)
    , m_daemonCommands(device.connection(), m_names, feed)
{
    m_commands = device.scenery().commands(feed) + deviceCommands(device, feed) + m_daemonCommands.commands();
    const auto help = [this](const auto &) { showHelp(); };
    const auto finish = [this](const auto &) { emit finished(); };
    m_commands << command("help", "", "this", help) << command("?", "", "the same", help)
               << command("quit", "", "end", finish) << command("exit", "", "the same", finish);
    reader.setCompleter([this](const QStringList &words) { return completions(words); });
    feed.setPrinter([&reader](const QString &line) { reader.print(line); });
    connect(&reader, &LineReader::lineEntered, this, &Console::executeRead);
    connect(&reader, &LineReader::ended, this, &Console::finished);
    // Whatever ends a command ends with one of these.
    connect(&m_daemonCommands, &DaemonCommands::idle, this, &Console::goOn, Qt::QueuedConnection);
    connect(&feed, &Feed::added, this, &Console::goOn, Qt::QueuedConnection);
}

Console::~Console()
{
    m_feed.setPrinter(printLine);
}

void Console::readStandardInput()
{
    m_isWaiting = true;
    goOn();
}

void Console::executeRead(const QString &line)
{
    m_understoodAll = execute(line) && m_understoodAll;
    m_isWaiting = true;
    goOn();
}

void Console::goOn()
{
    const bool isOver = !m_daemonCommands.isBusy() && !m_device.isStarting();
    if (m_isWaiting && (isOver || LineReader::isTerminal())) {
        m_isWaiting = false;
        m_reader.next();
    }
}

bool Console::execute(const QString &line)
{
    const std::optional<QStringList> words = splitWords(line);
    if (!words) {
        m_feed.tell(QStringLiteral("A quote is not closed."));
        return false;
    }
    if (words->isEmpty() || carryOut(m_commands, *words)) {
        return true;
    }
    m_feed.tell(notUnderstood(m_commands, words->first()));
    return false;
}

QStringList Console::completions(const QStringList &words)
{
    return continuations(m_commands, words, [this] {
        m_names.setNetworks(connmanServices(m_device.connection()));
        return m_names.names();
    });
}

void Console::showHelp()
{
    for (const Command &command : qAsConst(m_commands)) {
        m_feed.tell(QStringLiteral("%1: %2").arg(command.usage(), command.help));
    }
    m_feed.tell(networkHelp());
}
