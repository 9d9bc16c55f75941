#include "TourSteps.h"

#include <QFile>
#include <QRegularExpression>

namespace {

const QString commentMark = QStringLiteral("#");
const QString commandMark = QStringLiteral("> ");
const QString expectedMark = QStringLiteral("< ");
const QString gap = QStringLiteral("...");

void addLine(TourStep &step, const QString &line)
{
    if (line.startsWith(commandMark)) {
        step.commands << line.mid(commandMark.size());
    } else if (line.startsWith(expectedMark)) {
        step.expected << line.mid(expectedMark.size());
    } else {
        step.narration += step.narration.isEmpty() ? line : QLatin1Char(' ') + line;
    }
}

} // namespace

QVector<TourStep> tourSteps()
{
    Q_INIT_RESOURCE(tour); // nobody else names it, so a program that links the library would not have it
    QFile file(QStringLiteral(":/tour.txt"));
    return file.open(QIODevice::ReadOnly) ? readTourSteps(QString::fromUtf8(file.readAll()))
                                          : QVector<TourStep>();
}

QVector<TourStep> readTourSteps(const QString &text)
{
    QVector<TourStep> steps;
    bool begins = true;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        if (line.startsWith(commentMark)) {
            continue;
        }
        if (line.isEmpty()) {
            begins = true;
            continue;
        }
        if (begins) {
            steps << TourStep();
        }
        begins = false;
        addLine(steps.last(), line);
    }
    return steps;
}

bool isExpected(const QString &event, const QString &expected)
{
    QStringList parts;
    for (const QString &part : expected.split(gap)) {
        parts << QRegularExpression::escape(part.trimmed());
    }
    const QRegularExpression beginning(QLatin1Char('^') + parts.join(QStringLiteral(".*")));
    return beginning.match(event.simplified()).hasMatch();
}
