#include "Command.h"

#include <algorithm>
#include <utility>

namespace {

const QString network = QStringLiteral("NETWORK");

bool isOptional(const QString &formWord)
{
    return formWord.startsWith(QLatin1Char('['));
}

bool repeats(const QString &formWord)
{
    return formWord.endsWith(QStringLiteral("..."));
}

bool standsForItself(const QString &formWord)
{
    return formWord == formWord.toLower();
}

bool accepts(const QString &formWord, const QString &argument)
{
    return !standsForItself(formWord) || formWord.split(QLatin1Char('|')).contains(argument);
}

} // namespace

bool Command::fits(const QStringList &arguments) const
{
    const QStringList words = formWords();
    const auto required =
        std::count_if(words.cbegin(), words.cend(), [](const auto &word) { return !isOptional(word); });
    return arguments.size() >= required && mayBeginWith(arguments);
}

bool Command::mayBeginWith(const QStringList &arguments) const
{
    const QStringList words = formWords();
    const bool endless = !words.isEmpty() && repeats(words.last());
    if (!endless && arguments.size() > words.size()) {
        return false;
    }
    for (int i = 0; i < std::min(words.size(), arguments.size()); ++i) {
        if (!accepts(words.at(i), arguments.at(i))) {
            return false;
        }
    }
    return true;
}

const Command *commandMeant(const QVector<Command> &commands, const QStringList &words)
{
    const auto meant = std::find_if(commands.cbegin(), commands.cend(), [&](const Command &candidate) {
        return candidate.name == words.value(0) && candidate.fits(words.mid(1));
    });
    return meant == commands.cend() ? nullptr : &*meant;
}

bool carryOut(const QVector<Command> &commands, const QStringList &words)
{
    const Command *meant = commandMeant(commands, words);
    if (meant == nullptr) {
        return false;
    }
    meant->run(words.mid(1));
    return true;
}

QString notUnderstood(const QVector<Command> &commands, const QString &name)
{
    QStringList forms;
    for (const Command &command : commands) {
        if (command.name == name) {
            forms << command.usage();
        }
    }
    return forms.isEmpty() ? QStringLiteral("There is no command \"%1\"; \"help\" lists them.").arg(name)
                           : QStringLiteral("It is: %1").arg(forms.join(QStringLiteral("; or: ")));
}

QStringList continuations(const QVector<Command> &commands, const QStringList &words,
                          const std::function<QStringList()> &networks)
{
    QStringList found;
    bool wantsNetwork = false;
    for (const Command &command : commands) {
        if (words.isEmpty()) {
            found << command.name;
        } else if (command.name == words.first() && command.mayBeginWith(words.mid(1))) {
            const QString next = command.formWords().value(words.size() - 1);
            wantsNetwork = wantsNetwork || next == network;
            if (standsForItself(next)) {
                found << next.split(QLatin1Char('|'), Qt::SkipEmptyParts);
            }
        }
    }
    if (wantsNetwork) {
        found << networks();
    }
    found.removeDuplicates();
    return found;
}

Command command(const char *name, const char *form, const char *help,
                std::function<void(const QStringList &)> run)
{
    return {QString::fromLatin1(name), QString::fromLatin1(form), QString::fromLatin1(help), std::move(run)};
}
