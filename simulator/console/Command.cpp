#include "Command.h"

#include <algorithm>
#include <utility>

namespace {

bool isOptional(const QString &formWord)
{
    return formWord.startsWith(QLatin1Char('['));
}

bool repeats(const QString &formWord)
{
    return formWord.endsWith(QStringLiteral("..."));
}

bool accepts(const QString &formWord, const QString &argument)
{
    const bool isItself = formWord == formWord.toLower();
    return !isItself || formWord.split(QLatin1Char('|')).contains(argument);
}

} // namespace

bool Command::fits(const QStringList &arguments) const
{
    const QStringList words = formWords();
    const auto required =
        std::count_if(words.cbegin(), words.cend(), [](const auto &word) { return !isOptional(word); });
    const bool endless = !words.isEmpty() && repeats(words.last());
    if (arguments.size() < required || (!endless && arguments.size() > words.size())) {
        return false;
    }
    for (int i = 0; i < std::min(words.size(), arguments.size()); ++i) {
        if (!accepts(words.at(i), arguments.at(i))) {
            return false;
        }
    }
    return true;
}

bool carryOut(const QVector<Command> &commands, QStringList words)
{
    const QString name = words.takeFirst();
    const auto meant = std::find_if(commands.cbegin(), commands.cend(), [&](const Command &candidate) {
        return candidate.name == name && candidate.fits(words);
    });
    if (meant == commands.cend()) {
        return false;
    }
    meant->run(words);
    return true;
}

Command command(const char *name, const char *form, const char *help,
                std::function<void(const QStringList &)> run)
{
    return {QString::fromLatin1(name), QString::fromLatin1(form), QString::fromLatin1(help), std::move(run)};
}
