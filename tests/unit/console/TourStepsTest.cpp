// How the tour's text is read, and when an event is what a step expects.
#include "TourSteps.h"
#include "Suite.h"
#include <QTest>

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

class TourStepsTest : public QObject
{
    Q_OBJECT
private slots:
    void readsNarrationCommandsAndExpectations();
    void emptyLinesSeparateSteps();
    void commentsBelongToNoStep();
    void textWithoutStepsHasNone();
    void everyStepOfTheTourIsComplete();
    void eventIsExpected_data();
    void eventIsExpected();
};

void TourStepsTest::readsNarrationCommandsAndExpectations()
{
    const QVector<TourStep> steps = readTourSteps(text("The cable is plugged in.\n"
                                                       "It has an address.\n"
                                                       "> cable in\n"
                                                       "> list\n"
                                                       "< LED: on\n"
                                                       "< reply: 1 networks\n"));
    QCOMPARE(steps.size(), 1);
    QCOMPARE(steps.first().narration, text("The cable is plugged in. It has an address."));
    QCOMPARE(steps.first().commands, (QStringList{text("cable in"), text("list")}));
    QCOMPARE(steps.first().expected, (QStringList{text("LED: on"), text("reply: 1 networks")}));
}

void TourStepsTest::emptyLinesSeparateSteps()
{
    const QVector<TourStep> steps = readTourSteps(text("\nOne.\n> a\n\n\nTwo.\n> b\n\n"));
    QCOMPARE(steps.size(), 2);
    QCOMPARE(steps.at(0).commands, QStringList{text("a")});
    QCOMPARE(steps.at(1).narration, text("Two."));
    QCOMPARE(steps.at(1).commands, QStringList{text("b")});
}

void TourStepsTest::commentsBelongToNoStep()
{
    const QVector<TourStep> steps = readTourSteps(text("# Alone.\n#\n\nOne.\n# Within.\n> a\n"));
    QCOMPARE(steps.size(), 1);
    QCOMPARE(steps.first().narration, text("One."));
    QCOMPARE(steps.first().commands, QStringList{text("a")});
}

void TourStepsTest::textWithoutStepsHasNone()
{
    QCOMPARE(readTourSteps(text("# Nothing\n\n")).size(), 0);
    QCOMPARE(readTourSteps(QString()).size(), 0);
}

void TourStepsTest::everyStepOfTheTourIsComplete()
{
    const QVector<TourStep> steps = tourSteps();
    QVERIFY(!steps.isEmpty());
    for (const TourStep &step : steps) {
        const QByteArray what = step.narration.toUtf8() + step.commands.join(QLatin1Char(';')).toUtf8();
        QVERIFY2(!step.narration.isEmpty(), what);
        QVERIFY2(!step.commands.isEmpty(), what);
        QVERIFY2(!step.expected.isEmpty(), what);
    }
}

void TourStepsTest::eventIsExpected_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("is");
    const auto row = [](const char *name, const char *event, const char *expected, bool is) {
        QTest::newRow(name) << text(event) << text(expected) << is;
    };
    row("whole", "LED: on", "LED: on", true);
    row("beginning", "signal: error Unknown network", "signal: error", true);
    row("not at the beginning", "program: LED: on", "LED: on", false);
    row("longer than the event", "LED: on", "LED: on and off", false);
    row("gap", "reply: activeNetworks Wired, Kitchen", "reply: activeNetworks ... Kitchen", true);
    row("empty gap", "reply: activeNetworks Kitchen", "reply: activeNetworks ... Kitchen", true);
    row("nothing behind the gap", "reply: activeNetworks Wired", "reply: activeNetworks ... Kitchen", false);
    row("two gaps", "reply: a, b, c, d", "reply: a ... b ... d", true);
    row("two gaps in the wrong order", "reply: a, b, c, d", "reply: a ... d ... b", false);
    row("the same part twice, there once", "reply: a, b", "reply: a ... b ... b", false);
    row("lines", "reply: x\n  Address: 1\n  Method: dhcp", "reply: x Address: 1 Method: dhcp", true);
}

void TourStepsTest::eventIsExpected()
{
    QFETCH(const QString, event);
    QFETCH(const QString, expected);
    QTEST(isExpected(event, expected), "is");
}

static const Suite<TourStepsTest> tourStepsTest;
#include "TourStepsTest.moc"
