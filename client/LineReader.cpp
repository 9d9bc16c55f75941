#include "LineReader.h"

#include "LineCompletion.h"
#include "Output.h"
#include "SilentTerminal.h"
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <QEventLoop>
#include <readline/history.h>
#include <readline/readline.h>
#include <unistd.h>
#include <utility>

namespace {

LineReader *theReader = nullptr; // readline's callbacks carry nothing that could tell

void showPrompt(const QByteArray &prompt)
{
    std::fputs(prompt.constData(), stderr);
    std::fflush(stderr);
}

void remember(const QByteArray &line)
{
    const HIST_ENTRY *last = history_length > 0 ? history_get(history_base + history_length - 1) : nullptr;
    if (!line.trimmed().isEmpty() && (last == nullptr || line != last->line)) {
        add_history(line.constData());
    }
}

} // namespace

LineReader::LineReader(const QString &prompt, Style style, QObject *parent)
    : QObject(parent)
    , m_prompt(prompt.toLocal8Bit())
    , m_style(style)
    , m_input(STDIN_FILENO, QSocketNotifier::Read)
{
    theReader = this;
    m_input.setEnabled(false);
    connect(&m_input, &QSocketNotifier::activated, this, &LineReader::readAvailable);
    rl_catch_signals = 0;                              // they are this program's
    rl_variable_bind("enable-bracketed-paste", "off"); // lines pasted are lines typed
    completeLinesWith([](const QStringList &words) {
        return theReader->completer() ? theReader->completer()(words) : QStringList();
    });
}

LineReader::~LineReader()
{
    if (m_style == Style::Editing && m_isAsking) {
        rl_callback_handler_remove(); // gives the terminal back as it was
        std::fputc('\n', stdout);
    }
    theReader = nullptr;
}

LineReader::Style LineReader::usualStyle(bool plain)
{
    return !plain && isTerminal() && isatty(STDOUT_FILENO) != 0 ? Style::Editing : Style::Plain;
}

bool LineReader::isTerminal()
{
    return isatty(STDIN_FILENO) != 0;
}

void LineReader::next()
{
    m_isAsking = true;
    if (m_style == Style::Editing) {
        rl_callback_handler_install(m_prompt.constData(), [](char *line) { theReader->finishEditing(line); });
        m_input.setEnabled(true);
        return;
    }
    if (isTerminal()) {
        showPrompt(m_prompt);
    }
    if (m_isAtEnd || m_buffer.contains('\n')) {
        // Later, as for any other line: whoever asks need not expect it at once.
        QMetaObject::invokeMethod(
            this, [this] { takeBufferedLine(); }, Qt::QueuedConnection);
    } else {
        m_input.setEnabled(true);
    }
}

void LineReader::startAnew()
{
    if (m_style == Style::Editing) {
        rl_callback_sigcleanup();
        rl_free_line_state();
        rl_callback_handler_remove();
    }
    m_buffer.clear();
    std::fputc('\n', stdout);
    std::fflush(stdout);
    next();
}

void LineReader::print(const QString &line)
{
    const bool isTyping = m_style == Style::Editing && m_isAsking;
    if (isTyping) {
        rl_clear_visible_line();
    }
    printLine(line);
    if (isTyping) {
        rl_on_new_line();
        rl_redisplay();
    }
}

void LineReader::readAvailable()
{
    if (m_style == Style::Editing) {
        rl_callback_read_char();
    } else {
        readPlainly();
    }
}

void LineReader::finishEditing(char *line)
{
    const QByteArray text(line);
    const bool isEnd = line == nullptr;
    std::free(line);
    rl_callback_handler_remove();
    m_input.setEnabled(false);
    m_isAsking = false;
    remember(text);
    if (isEnd) {
        printLine({});
    }
    // Later: this is called from within readline.
    QMetaObject::invokeMethod(
        this, [this, text, isEnd] { isEnd ? emit ended() : emit lineEntered(QString::fromLocal8Bit(text)); },
        Qt::QueuedConnection);
}

void LineReader::readPlainly()
{
    QByteArray chunk(4096, Qt::Uninitialized);
    const auto length = read(STDIN_FILENO, chunk.data(), static_cast<std::size_t>(chunk.size()));
    if (length > 0) {
        m_buffer += chunk.left(static_cast<int>(length));
    }
    m_isAtEnd = length == 0 || (length < 0 && errno != EINTR && errno != EAGAIN);
    takeBufferedLine();
}

void LineReader::takeBufferedLine()
{
    if (!m_buffer.contains('\n') && !m_isAtEnd) {
        return;
    }
    m_input.setEnabled(false);
    m_isAsking = false;
    if (m_buffer.isEmpty()) {
        emit ended();
        return;
    }
    emit lineEntered(takeBufferedText());
}

// The last line need not end like the others.
QString LineReader::takeBufferedText()
{
    const int end = m_buffer.indexOf('\n');
    const QByteArray line = end < 0 ? m_buffer : m_buffer.left(end);
    m_buffer.remove(0, line.size() + 1);
    return QString::fromLocal8Bit(line);
}

std::optional<QString> LineReader::answer(const QString &question, Echo echo)
{
    const SilentTerminal silence(echo == Echo::Secret && isTerminal());
    if (isTerminal()) {
        showPrompt(question.toLocal8Bit());
    }
    QEventLoop loop;
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    connect(&input, &QSocketNotifier::activated, &loop, [this, &loop] {
        // One at a time: what follows the line may belong to whoever reads after this program.
        char character = '\0';
        if (read(STDIN_FILENO, &character, 1) != 1) {
            loop.quit();
            return;
        }
        m_buffer += character;
        if (character == '\n') {
            loop.quit();
        }
    });
    bool isGivenUp = false;
    connect(this, &LineReader::answerGivenUp, &loop, [&loop, &isGivenUp] {
        isGivenUp = true;
        loop.quit();
    });
    if (!m_buffer.contains('\n')) {
        loop.exec();
    }
    if (isGivenUp) {
        m_buffer.clear(); // half an answer is none
    }
    return m_buffer.isEmpty() ? std::nullopt : std::make_optional(takeBufferedText());
}
