#include "Words.h"

namespace {

const QChar backslash = QLatin1Char('\\');
const QChar singleQuote = QLatin1Char('\'');
const QChar doubleQuote = QLatin1Char('"');

/// Reads a line character by character.
class WordReader
{
public:
    void take(QChar character)
    {
        if (m_isEscaped) {
            takeEscaped(character);
        } else if (character == backslash && m_quote != singleQuote) {
            m_isEscaped = true;
        } else if (!m_quote.isNull()) {
            takeQuoted(character);
        } else if (character == singleQuote || character == doubleQuote) {
            m_quote = character;
            m_isInWord = true;
        } else if (character.isSpace()) {
            endWord();
        } else {
            add(character);
        }
    }

    std::optional<QStringList> words()
    {
        endWord();
        return m_isEscaped || !m_quote.isNull() ? std::nullopt : std::make_optional(m_words);
    }

private:
    // Within double quotes a backslash only means something before what could mean something there.
    void takeEscaped(QChar character)
    {
        if (m_quote == doubleQuote && character != doubleQuote && character != backslash) {
            add(backslash);
        }
        add(character);
        m_isEscaped = false;
    }

    void takeQuoted(QChar character)
    {
        if (character == m_quote) {
            m_quote = {};
        } else {
            add(character);
        }
    }

    void add(QChar character)
    {
        m_word += character;
        m_isInWord = true;
    }

    void endWord()
    {
        if (m_isInWord) {
            m_words << m_word;
        }
        m_word.clear();
        m_isInWord = false;
    }

    QStringList m_words;
    QString m_word;
    QChar m_quote;
    bool m_isInWord = false;
    bool m_isEscaped = false;
};

} // namespace

std::optional<QStringList> splitWords(const QString &line)
{
    WordReader reader;
    for (const QChar character : line) {
        reader.take(character);
    }
    return reader.words();
}

QString escapedWord(const QString &word)
{
    if (word.isEmpty()) {
        return QStringLiteral("''");
    }
    QString escaped;
    for (const QChar character : word) {
        if (character.isSpace() || character == backslash || character == singleQuote ||
            character == doubleQuote) {
            escaped += backslash;
        }
        escaped += character;
    }
    return escaped;
}
