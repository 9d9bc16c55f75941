#include "Run.h"
#include "Text.h"

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
    print(what, measured, limit, holds ? "yes"_s : "NO"_s);
}

void Run::checkEqual(const QString &what, qint64 measured, qint64 expected)
{
    check(what, QString::number(measured), QString::number(expected), measured == expected);
}

void Run::checkTime(const QString &what, qint64 measuredMs, qint64 limitMs)
{
    checkCost(what, measuredMs, limitMs, "ms"_s);
}

void Run::checkGrowth(const QString &what, qint64 measuredKiB, qint64 limitKiB)
{
    checkCost(what, measuredKiB, limitKiB, "KiB"_s);
}

void Run::checkCost(const QString &what, qint64 measured, qint64 limit, const QString &unit)
{
    const QString measuredText = "%1 %2"_s.arg(measured).arg(unit);
    const QString limitText = "%1 %2"_s.arg(limit).arg(unit);
    if (isInstrumented) {
        print(what, measuredText, limitText, "not asked of a sanitizer"_s);
    } else {
        check(what, measuredText, limitText, measured <= limit);
    }
}

void Run::print(const QString &what, const QString &measured, const QString &limit,
                const QString &holds) const
{
    out() << "| %1: %2 | %3 | %4 | %5 |\n"_s.arg(m_figure, what, measured, limit, holds);
    out().flush();
}

void printHeader()
{
    out() << "| what | measured | limit | holds |\n|---|---|---|---|\n";
    out().flush();
}

} // namespace soak
