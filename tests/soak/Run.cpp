#include "Run.h"

#include <QTextStream>
#include <utility>

namespace soak {

namespace {
#ifdef SANITIZED
constexpr bool isInstrumented = true;
#else
constexpr bool isInstrumented = false;
#endif
/// How much longer everything may take.
constexpr int slowness = isInstrumented ? 4 : 1;

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}
} // namespace

Run::Run(QString figure, int count, quint32 seed, qint64 timeLimitMs)
    : m_figure(std::move(figure))
    , m_count(count)
    , m_random(seed)
    , m_deadline(timeLimitMs * slowness)
{
}

void Run::check(const QString &what, const QString &measured, const QString &limit, bool holds)
{
    m_holds = m_holds && holds;
    print(what, measured, limit, holds ? QStringLiteral("yes") : QStringLiteral("NO"));
}

void Run::checkEqual(const QString &what, qint64 measured, qint64 expected)
{
    check(what, QString::number(measured), QString::number(expected), measured == expected);
}

void Run::checkTime(const QString &what, qint64 measuredMs, qint64 limitMs)
{
    checkCost(what, measuredMs, limitMs, QStringLiteral("ms"));
}

void Run::checkGrowth(const QString &what, qint64 measuredKiB, qint64 limitKiB)
{
    checkCost(what, measuredKiB, limitKiB, QStringLiteral("KiB"));
}

void Run::checkCost(const QString &what, qint64 measured, qint64 limit, const QString &unit)
{
    const QString measuredText = QStringLiteral("%1 %2").arg(measured).arg(unit);
    const QString limitText = QStringLiteral("%1 %2").arg(limit).arg(unit);
    if (isInstrumented) {
        print(what, measuredText, limitText, QStringLiteral("not asked of a sanitizer"));
    } else {
        check(what, measuredText, limitText, measured <= limit);
    }
}

void Run::print(const QString &what, const QString &measured, const QString &limit,
                const QString &holds) const
{
    out() << QStringLiteral("| %1: %2 | %3 | %4 | %5 |\n").arg(m_figure, what, measured, limit, holds);
    out().flush();
}

void printHeader()
{
    out() << "| what | measured | limit | holds |\n|---|---|---|---|\n";
    out().flush();
}

} // namespace soak
