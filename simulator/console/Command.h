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
    bool fits(const QStringList &arguments) const;
};

/// Carries out what was typed, a command's name and the words behind it; false when none is meant by it.
bool carryOut(const QVector<Command> &commands, QStringList words);

/// For tables of commands, whose texts are plain literals.
Command command(const char *name, const char *form, const char *help,
                std::function<void(const QStringList &)> run);
