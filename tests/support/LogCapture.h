#pragma once

#include <mutex>
#include <QString>
#include <QStringList>
#include <QVector>

namespace test_support {

/// One message that went through Qt's logging, as its handler got it (before any message pattern).
struct LogMessage
{
    QtMsgType type = QtDebugMsg;
    QString category;
    QString text;

    /// "<type> <category>: <text>".
    QString line() const;
};

/// The lines of a critical message and of a warning.
QString critical(const QString &category, const QString &text);
QString warning(const QString &category, const QString &text);

/// Records everything logged while it lives, from every thread. What was recorded goes on to the previous
/// message handler only when the test has failed by the time the capture ends, or at once when the
/// environment has TEST_SHOW_LOG set. One capture at a time.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    QVector<LogMessage> messages() const;
    /// The texts of one category ("default" for messages without one), in order; of one type only, if given.
    QStringList lines(const QString &category) const;
    QStringList lines(const QString &category, QtMsgType type) const;
    /// All warnings and critical messages as lines, in order.
    QStringList complaints() const;
    /// Whether any message has `text` in it.
    bool contains(const QString &text) const;
    bool contains(QtMsgType type, const QString &category, const QString &text) const;
    /// The texts of all critical messages, which are forgotten by this call. A test that ends with
    /// `QCOMPARE(log.takeCriticals(), QStringList{})` has shown that nothing unexpected was logged.
    QStringList takeCriticals();
    void clear();

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text);
    void record(QtMsgType type, const QMessageLogContext &context, const QString &text);
    void replay() const;

    mutable std::mutex m_mutex;
    QVector<LogMessage> m_messages;
    QtMessageHandler m_previous = nullptr;
    const bool m_showAll;
};

} // namespace test_support
