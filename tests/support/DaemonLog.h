#pragma once

#include <QObject>
#include <QStringList>

namespace test_support {

/// The daemon's standard error, line by line: "<category>|<type>|<message>" for its log lines, anything else
/// (a sanitizer's report, say) as it stands.
///
/// Lines that should not be there are problems: critical and fatal ones of any category, warnings of Qt's own
/// categories (somebody misuses Qt) and everything that is no log line. A test takes the ones it provoked;
/// those left at its end fail it.
class DaemonLog : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// What makes the daemon log in this form (environment variable QT_MESSAGE_PATTERN).
    static QString messagePattern();

    void add(const QByteArray &output);

    QStringList lines() const { return m_lines; }
    /// Runs the event loop until `line` has been logged `times` times.
    bool waitFor(const QString &line, int times = 1) const;
    /// The same for a problem, which is then taken: one occurrence of it fails the test no more.
    bool takeProblem(const QString &line);
    /// From now on that line is no problem, however often it comes or has come.
    void tolerate(const QString &line);
    QStringList problems() const { return m_problems; }
    /// Takes all problems there are, which fail the test no more.
    QStringList takeProblems();

    /// Prints everything, for the reader of a failure.
    void print() const;

signals:
    void lineAdded();

private:
    bool isProblem(const QString &line) const;

    QByteArray m_incomplete;
    QStringList m_lines;
    QStringList m_problems;
    QStringList m_tolerated;
};

} // namespace test_support
