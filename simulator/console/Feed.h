#pragma once

#include "Output.h"
#include <functional>
#include <QObject>
#include <QStringList>
#include <utility>

/// What the console shows: plain lines in the order things happen, each with the time and a word that says
/// where it comes from. Lines are never rewritten, so that a screen reader can follow.
class Feed : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Prints the lines from now on, in place of a plain print to standard output.
    using Printer = std::function<void(const QString &line)>;
    void setPrinter(Printer printer) { m_print = std::move(printer); }
    /// Prints nothing from now on.
    void silence() { m_isSilent = true; }

    /// Something that happened: "12:00:00.000 speech: ...".
    void happened(const QString &source, const QString &text);
    /// Text for the reader that is no event: an answer to a command, the tour's narration.
    void tell(const QString &text);

    /// Everything that happened since the last forget(), without the times.
    QStringList events() const { return m_events; }
    void forget() { m_events.clear(); }

signals:
    void added();

private:
    void print(const QString &line) const;

    Printer m_print = printLine;
    bool m_isSilent = false;
    QStringList m_events;
};
