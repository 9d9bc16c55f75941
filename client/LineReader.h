#pragma once

#include <functional>
#include <optional>
#include <QObject>
#include <QSocketNotifier>
#include <QStringList>

/// Reads standard input line by line, each when it is asked for: on a terminal with line editing, history and
/// completion, otherwise plainly. One instance per process.
class LineReader : public QObject
{
    Q_OBJECT
public:
    /// Plain: nothing is ever redrawn.
    enum class Style { Editing, Plain };
    /// `prompt` is shown on a terminal only.
    LineReader(const QString &prompt, Style style, QObject *parent = nullptr);
    ~LineReader() override;
    Q_DISABLE_COPY_MOVE(LineReader)

    /// Editing where both standard input and output are a terminal, unless it is to be plain.
    static Style usualStyle(bool plain);
    /// Whether standard input is a terminal.
    static bool isTerminal();

    /// Asks for the next line: lineEntered() or ended() follows.
    void next();
    /// Throws away what has been typed of the line and begins it anew.
    void startAnew();
    /// Waits for a line that answers a question, which only a terminal shows; nothing at the end of the input
    /// or after giveUpAnswer(). A secret is not shown while it is typed.
    enum class Echo { Shown, Secret };
    std::optional<QString> answer(const QString &question, Echo echo);
    /// Ends that wait.
    void giveUpAnswer() { emit answerGivenUp(); }

    /// What may be typed behind these words.
    using Completer = std::function<QStringList(const QStringList &words)>;
    void setCompleter(Completer completer) { m_completer = std::move(completer); }
    const Completer &completer() const { return m_completer; }

    /// Prints a line to standard output, above the one that is being typed.
    void print(const QString &line);

signals:
    void lineEntered(const QString &line);
    void answerGivenUp();
    /// There is no further line.
    void ended();

private:
    void readAvailable();
    void readPlainly();
    void takeBufferedLine();
    QString takeBufferedText();
    void finishEditing(char *line);

    const QByteArray m_prompt;
    const Style m_style;
    QSocketNotifier m_input;
    bool m_isAsking = false;
    bool m_isAtEnd = false;
    QByteArray m_buffer;
    Completer m_completer;
};
