#pragma once

#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVector>

/// One operation of the daemon's interface.
struct DaemonMethod
{
    QString name;
    /// Of its value, where a command asks for several.
    QString label;
};

/// A command that is calls to the daemon. The form's words (see Command) are each method's arguments in
/// order: "on|off" is a boolean, "SERVER..." a list of the rest and "none" an empty one; all others are
/// strings, empty where left out. A NETWORK is told as NetworkNames understands it.
struct DaemonCall
{
    enum class Reply {
        Success, ///< whether it was done
        Value,   ///< what was asked for
        Needed,  ///< the same; an empty one is a failure
    };
    QString name;
    QString form;
    QVector<DaemonMethod> methods;
    Reply reply;
    QString help;

    QStringList formWords() const { return form.split(QLatin1Char(' '), Qt::SkipEmptyParts); }
    /// Which of the words is the network; -1 when none is.
    int networkPosition() const;
    QVariantList arguments(const QStringList &words) const;
    /// Whether it asks how something is that another form of it switches "on|off".
    bool asksForSwitch() const;
    /// Whether it connects a network, so that disconnecting that one ends it early.
    bool connects() const;
    /// What is going on while the answer is waited for: "Connecting", say.
    QString activity() const;
};

/// All of them: every operation there is.
const QVector<DaemonCall> &daemonCalls();
