#include "DaemonLog.h"

#include "EventWait.h"
#include "Text.h"
#include <cstdio>
#include <utility>

namespace test_support {

QString DaemonLog::messagePattern()
{
    return "%{category}|%{type}|%{message}"_s;
}

void DaemonLog::add(const QByteArray &output)
{
    m_incomplete += output;
    for (int end = m_incomplete.indexOf('\n'); end >= 0; end = m_incomplete.indexOf('\n')) {
        const QString line = QString::fromUtf8(m_incomplete.left(end));
        m_incomplete.remove(0, end + 1);
        m_lines << line;
        if (isProblem(line)) {
            m_problems << line;
        }
        emit lineAdded();
    }
}

bool DaemonLog::isProblem(const QString &line) const
{
    if (m_tolerated.contains(line)) {
        return false;
    }
    const QString category = line.section(QLatin1Char('|'), 0, 0);
    const QString type = line.section(QLatin1Char('|'), 1, 1);
    if (type == QLatin1String("debug") || type == QLatin1String("info")) {
        return false;
    }
    if (type == QLatin1String("warning")) {
        return category == QLatin1String("default") || category.startsWith(QLatin1String("qt."));
    }
    return true;
}

bool DaemonLog::waitFor(const QString &line, int times) const
{
    return waitUntil([&] { return m_lines.count(line) >= times; });
}

bool DaemonLog::takeProblem(const QString &line)
{
    return waitUntil([&] { return m_problems.contains(line); }) && m_problems.removeOne(line);
}

QStringList DaemonLog::takeProblems()
{
    return std::exchange(m_problems, {});
}

void DaemonLog::tolerate(const QString &line)
{
    m_tolerated << line;
    m_problems.removeAll(line);
}

void DaemonLog::print() const
{
    std::fputs("--- the daemon's log\n", stderr);
    for (const QString &line : m_lines) {
        std::fprintf(stderr, "%s\n", line.toUtf8().constData());
    }
    std::fprintf(stderr, "%s---\n", m_incomplete.constData());
}

} // namespace test_support
