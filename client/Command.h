#pragma once

#include <functional>
#include <QString>
#include <QStringList>
#include <QVector>

/// One thing that can be typed. Its form says what belongs behind the name, one word each:
///   NETWORK   anything       [PIN]  may be left out       SERVER...  one or more
///   none      just that      on|off  one of these
/// A name may have several forms; the first that fits is taken.
struct Command
{
    QString name;
    QString form;
    QString help;
    std::function<void(const QStringList &)> run;

    QString usage() const { return form.isEmpty() ? name : name + QLatin1Char(' ') + form; }
    QStringList formWords() const { return form.split(QLatin1Char(' '), Qt::SkipEmptyParts); }
    /// Whether these are the words that belong behind the name.
    bool fits(const QStringList &arguments) const;
    /// Whether they are the first of such words.
    bool mayBeginWith(const QStringList &arguments) const;
};

/// The command that is meant by a name and the words behind it; null when there is none.
const Command *commandMeant(const QVector<Command> &commands, const QStringList &words);

/// Carries out what was typed; false when no command is meant by it.
bool carryOut(const QVector<Command> &commands, const QStringList &words);

/// Why no command is meant: "It is: ..." with the forms of that name, or that there is none.
QString notUnderstood(const QVector<Command> &commands, const QString &name);

/// What may be typed behind these words, which may be none: names of commands, words that stand for
/// themselves and, where a NETWORK belongs, `networks()`, which is called for no other reason.
QStringList continuations(const QVector<Command> &commands, const QStringList &words,
                          const std::function<QStringList()> &networks);

/// For tables of commands, whose texts are plain literals.
Command command(const char *name, const char *form, const char *help,
                std::function<void(const QStringList &)> run);
