#include "LogCapture.h"
#include "Text.h"

#include <algorithm>
#include <QTest>

namespace test_support {

namespace {
LogCapture *current = nullptr;

QString typeName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "debug"_s;
    case QtInfoMsg:
        return "info"_s;
    case QtWarningMsg:
        return "warning"_s;
    case QtCriticalMsg:
        return "critical"_s;
    case QtFatalMsg:
        return "fatal"_s;
    }
    return {};
}
} // namespace

QString LogMessage::line() const
{
    return "%1 %2: %3"_s.arg(typeName(type), category, text);
}

QString critical(const QString &category, const QString &text)
{
    return LogMessage{QtCriticalMsg, category, text}.line();
}

QString warning(const QString &category, const QString &text)
{
    return LogMessage{QtWarningMsg, category, text}.line();
}

LogCapture::LogCapture()
    : m_showAll(qEnvironmentVariableIsSet("TEST_SHOW_LOG"))
{
    Q_ASSERT(current == nullptr);
    current = this;
    m_previous = qInstallMessageHandler(&LogCapture::handle);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previous);
    current = nullptr;
    if (QTest::currentTestFailed() && !m_showAll) {
        replay();
    }
}

QVector<LogMessage> LogCapture::messages() const
{
    const std::lock_guard lock(m_mutex);
    return m_messages;
}

QStringList LogCapture::lines(const QString &category) const
{
    QStringList result;
    for (const LogMessage &message : messages()) {
        if (message.category == category) {
            result.append(message.text);
        }
    }
    return result;
}

QStringList LogCapture::lines(const QString &category, QtMsgType type) const
{
    QStringList result;
    for (const LogMessage &message : messages()) {
        if (message.category == category && message.type == type) {
            result.append(message.text);
        }
    }
    return result;
}

QStringList LogCapture::complaints() const
{
    QStringList result;
    for (const LogMessage &message : messages()) {
        if (message.type == QtWarningMsg || message.type == QtCriticalMsg) {
            result.append(message.line());
        }
    }
    return result;
}

bool LogCapture::contains(const QString &text) const
{
    const QVector<LogMessage> all = messages();
    return std::any_of(all.cbegin(), all.cend(),
                       [&text](const LogMessage &message) { return message.text.contains(text); });
}

bool LogCapture::contains(QtMsgType type, const QString &category, const QString &text) const
{
    return lines(category, type).contains(text);
}

QStringList LogCapture::takeCriticals()
{
    const std::lock_guard lock(m_mutex);
    const auto isKept = [](const LogMessage &message) { return message.type != QtCriticalMsg; };
    const auto firstCritical = std::stable_partition(m_messages.begin(), m_messages.end(), isKept);
    QStringList result;
    std::for_each(firstCritical, m_messages.end(),
                  [&result](const LogMessage &message) { result.append(message.text); });
    m_messages.erase(firstCritical, m_messages.end());
    return result;
}

void LogCapture::clear()
{
    const std::lock_guard lock(m_mutex);
    m_messages.clear();
}

void LogCapture::handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    current->record(type, context, text);
}

void LogCapture::record(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    {
        const std::lock_guard lock(m_mutex);
        m_messages.append({type, QString::fromUtf8(context.category), text});
    }
    // A fatal message ends the process before this capture could replay it.
    if (m_previous != nullptr && (m_showAll || type == QtFatalMsg)) {
        m_previous(type, context, text);
    }
}

void LogCapture::replay() const
{
    for (const LogMessage &message : messages()) {
        const QByteArray category = message.category.toUtf8();
        const QMessageLogContext context(nullptr, 0, nullptr, category.constData());
        if (m_previous != nullptr && message.type != QtFatalMsg) {
            m_previous(message.type, context, message.category + ": "_s + message.text);
        }
    }
}

} // namespace test_support
