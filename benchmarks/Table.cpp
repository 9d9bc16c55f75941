#include "Table.h"

#include <QTextStream>

#include <algorithm>

namespace {

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

} // namespace

double median(QVector<double> values)
{
    const auto middle = values.begin() + values.size() / 2;
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void printHeader(const QString &floor)
{
    out() << "\n| | " << floor << " | daemon | ratio | target |\n|---|---|---|---|---|\n";
    out().flush();
}

void printRow(const QString &what, const QString &unit, double floor, double daemon, const QString &target)
{
    out() << QStringLiteral("| %1 | %2 %5 | %3 %5 | %4 | %6 |\n")
                 .arg(what)
                 .arg(floor, 0, 'f', 1)
                 .arg(daemon, 0, 'f', 1)
                 .arg(daemon / floor, 0, 'f', 2)
                 .arg(unit, target);
    out().flush();
}
