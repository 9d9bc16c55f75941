#include "LineCompletion.h"

#include "Words.h"
#include <cstdlib>
#include <cstring>
#include <readline/readline.h>
#include <utility>

namespace {

std::function<QStringList(const QStringList &)> candidatesBehind;

// Behind an opening quote words are typed as they are, otherwise with backslashes.
QStringList matchesOf(const QString &beginning, const QStringList &before)
{
    QStringList matches;
    for (const QString &candidate : candidatesBehind(before)) {
        const QString typed = rl_completion_quote_character == '\0' ? escapedWord(candidate) : candidate;
        if (typed.startsWith(beginning)) {
            matches << typed;
        }
    }
    return matches;
}

int isEscaped(char *line, int index)
{
    return static_cast<int>(index > 0 && line[index - 1] == '\\' && isEscaped(line, index - 1) == 0);
}

/// One match a call; readline frees it.
char *nextMatch(const char *beginning, int state)
{
    static QStringList matches;
    if (state == 0) {
        QByteArray before(rl_line_buffer, rl_point);
        before.chop(static_cast<int>(std::strlen(beginning)) +
                    (rl_completion_quote_character == '\0' ? 0 : 1));
        matches = matchesOf(QString::fromLocal8Bit(beginning),
                            splitWords(QString::fromLocal8Bit(before)).value_or(QStringList()));
    }
    return matches.isEmpty() ? nullptr : strdup(matches.takeFirst().toLocal8Bit().constData());
}

char **complete(const char *beginning, int /*start*/, int /*end*/)
{
    rl_attempted_completion_over = 1; // no file names
    return rl_completion_matches(beginning, nextMatch);
}

} // namespace

void completeLinesWith(std::function<QStringList(const QStringList &)> candidates)
{
    static char blanks[] = " \t";
    static char quotes[] = "\"'";
    candidatesBehind = std::move(candidates);
    rl_completer_word_break_characters = blanks;
    rl_completer_quote_characters = quotes;
    rl_char_is_quoted_p = isEscaped;
    rl_attempted_completion_function = complete;
}
