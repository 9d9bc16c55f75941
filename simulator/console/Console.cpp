#include "Console.h"

#include "Device.h"
#include "DeviceCommands.h"
#include "Feed.h"
#include <QProcess>
#include <unistd.h>

Console::Console(Device &device, Feed &feed, QObject *parent)
    : QObject(parent)
    , m_feed(feed)
    , m_names(device.connection())
    , m_daemonCommands(device.connection(), m_names, feed)
    , m_input(STDIN_FILENO, QSocketNotifier::Read)
{
    m_input.setEnabled(false);
    connect(&m_input, &QSocketNotifier::activated, this, &Console::readAvailable);
    m_commands =
        device.surroundings().commands(feed) + deviceCommands(device, feed) + m_daemonCommands.commands();
    m_commands << Command{QStringLiteral("help"), {}, QStringLiteral("this"), [this](auto &) { showHelp(); }}
               << Command{
                      QStringLiteral("quit"), {}, QStringLiteral("end"), [this](auto &) { emit finished(); }};
}

void Console::readStandardInput()
{
    m_input.setEnabled(true);
}

void Console::readAvailable()
{
    QByteArray chunk(4096, Qt::Uninitialized);
    const auto length = read(STDIN_FILENO, chunk.data(), static_cast<std::size_t>(chunk.size()));
    if (length <= 0) {
        m_input.setEnabled(false);
        emit finished();
        return;
    }
    m_incomplete += chunk.left(static_cast<int>(length));
    for (int end = m_incomplete.indexOf('\n'); end >= 0; end = m_incomplete.indexOf('\n')) {
        const QString line = QString::fromLocal8Bit(m_incomplete.left(end));
        m_incomplete.remove(0, end + 1);
        execute(line);
    }
}

bool Console::execute(const QString &line)
{
    const QStringList words = QProcess::splitCommand(line);
    if (words.isEmpty() || carryOut(m_commands, words)) {
        return true;
    }
    showForms(words.first());
    return false;
}

void Console::showHelp()
{
    for (const Command &command : qAsConst(m_commands)) {
        m_feed.tell(QStringLiteral("%1: %2").arg(command.usage(), command.help));
    }
    m_feed.tell(
        QStringLiteral("A NETWORK is told by its number in the last list, by its name, by its identifier or "
                       "a part of it. Put double quotes around words with blanks."));
}

void Console::showForms(const QString &name)
{
    QStringList forms;
    for (const Command &command : qAsConst(m_commands)) {
        if (command.name == name) {
            forms << command.usage();
        }
    }
    m_feed.tell(forms.isEmpty() ? QStringLiteral("There is no command \"%1\"; \"help\" lists them.").arg(name)
                                : QStringLiteral("It is: %1").arg(forms.join(QStringLiteral("; or: "))));
}
