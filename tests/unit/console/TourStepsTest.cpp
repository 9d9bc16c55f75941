// How the tour's text is read, and when an event is what a step expects.
#include "TourSteps.h"
#include "Suite.h"
#include "Text.h"
#include <QTest>

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
    const QVector<TourStep> steps = readTourSteps("The cable is plugged in.\n"
                                                  "It has an address.\n"
                                                  "> cable in\n"
                                                  "> list\n"
                                                  "< LED: on\n"
                                                  "< reply: 1 network\n"_s);
    QCOMPARE(steps.size(), 1);
    QCOMPARE(steps.first().narration, "The cable is plugged in. It has an address."_s);
    QCOMPARE(steps.first().commands, (QStringList{"cable in"_s, "list"_s}));
    QCOMPARE(steps.first().expected, (QStringList{"LED: on"_s, "reply: 1 network"_s}));
}

void TourStepsTest::emptyLinesSeparateSteps()
{
    const QVector<TourStep> steps = readTourSteps("\nOne.\n> a\n\n\nTwo.\n> b\n\n"_s);
    QCOMPARE(steps.size(), 2);
    QCOMPARE(steps.at(0).commands, QStringList{"a"_s});
    QCOMPARE(steps.at(1).narration, "Two."_s);
    QCOMPARE(steps.at(1).commands, QStringList{"b"_s});
}

void TourStepsTest::commentsBelongToNoStep()
{
    const QVector<TourStep> steps = readTourSteps("# Alone.\n#\n\nOne.\n# Within.\n> a\n"_s);
    QCOMPARE(steps.size(), 1);
    QCOMPARE(steps.first().narration, "One."_s);
    QCOMPARE(steps.first().commands, QStringList{"a"_s});
}

void TourStepsTest::textWithoutStepsHasNone()
{
    QCOMPARE(readTourSteps("# Nothing\n\n"_s).size(), 0);
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
        QTest::newRow(name) << QString::fromLatin1(event) << QString::fromLatin1(expected) << is;
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
