#include "FakeLed.h"
#include "LedScene.h"
#include "Suite.h"
#include "Text.h"
#include <libled/Led.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTest>

/// Blinking, by the kernel and by the library.
using test_support::FakeDevices;

class LedBlinkingTest : public QObject
{
    Q_OBJECT

private slots:
    void blinkIsLeftToTheKernel();
    void blinkOfALedThatBlinksAlreadyIsLeftToTheKernelToo();
    void blinkWithAnotherPeriodChangesOnlyTheDelays();
    void blinkIsSetUpAnewAfterSteadyLight();
    void steadyLightIsWrittenAnewAfterBlinking();
    void blinkNeverAsksTheKernelForADelayOfZero();
    void blinkWithADurationEndsDark_data();
    void blinkWithADurationEndsDark();
    void blinkIsNotCutShort();
    void callBeforeTheDurationIsOverCancelsIt_data();
    void callBeforeTheDurationIsOverCancelsIt();
    void withoutTimerTriggerTheLibraryBlinks();
    void libraryStartsBlinkingLit();
    void libraryStartsBlinkingLitEachTime();
    void libraryKeepsItsRhythmWhenAskedAgain();
    void steadyLightEndsTheLibrarysBlinking();
};

void LedBlinkingTest::blinkIsLeftToTheKernel()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName);
    Led(ledName, nullptr).blink(500, untilToldOtherwise);
    QCOMPARE(files.takeWrites(), (QStringList{"trigger=timer"_s, "delay_on=250"_s, "delay_off=250"_s}));
}

// The trigger in use stands in brackets, as after a restart of the daemon.
void LedBlinkingTest::blinkOfALedThatBlinksAlreadyIsLeftToTheKernelToo()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed::Files blinking = FakeLed::kernelBlinking();
    blinking.insert(trigger, "none [timer]\n");
    FakeLed files(devices, ledName, blinking);
    Led(ledName, nullptr).blink(500, untilToldOtherwise);
    QCOMPARE(files.takeWrites(), (QStringList{"trigger=timer"_s, "delay_on=250"_s, "delay_off=250"_s}));
}

void LedBlinkingTest::blinkWithAnotherPeriodChangesOnlyTheDelays()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName);
    Led led(ledName, nullptr);
    led.blink(500, untilToldOtherwise);
    files.takeWrites();
    led.blink(1000, untilToldOtherwise);
    QCOMPARE(files.takeWrites(), (QStringList{"delay_on=500"_s, "delay_off=500"_s}));
}

// Setting another trigger makes the kernel forget the delays.
void LedBlinkingTest::blinkIsSetUpAnewAfterSteadyLight()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName);
    Led led(ledName, nullptr);
    led.blink(500, untilToldOtherwise);
    led.on();
    files.takeWrites();
    led.blink(500, untilToldOtherwise);
    QCOMPARE(files.takeWrites(), (QStringList{"trigger=timer"_s, "delay_on=250"_s, "delay_off=250"_s}));
}

// Setting another trigger makes the kernel switch the light off.
void LedBlinkingTest::steadyLightIsWrittenAnewAfterBlinking()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName);
    Led led(ledName, nullptr);
    led.on();
    led.blink(500, untilToldOtherwise);
    files.takeWrites();
    led.on();
    QCOMPARE(files.takeWrites(), (QStringList{"trigger=none"_s, "brightness=127"_s}));
}

void LedBlinkingTest::blinkNeverAsksTheKernelForADelayOfZero()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName);
    Led(ledName, nullptr).blink(0, untilToldOtherwise);
    QCOMPARE(files.content("delay_on"_s), QByteArray("1"));
    QCOMPARE(files.content("delay_off"_s), QByteArray("1"));
}

void LedBlinkingTest::blinkWithADurationEndsDark_data()
{
    QTest::addColumn<FakeLed::Files>("files");
    QTest::addColumn<int>("durationMs");
    QTest::newRow("by the kernel") << FakeLed::kernelBlinking() << 30;
    QTest::newRow("by the kernel, no time at all") << FakeLed::kernelBlinking() << 0;
    QTest::newRow("by the library") << FakeLed::withoutTimerTrigger() << 30;
    QTest::newRow("by the library, no time at all") << FakeLed::withoutTimerTrigger() << 0;
}

void LedBlinkingTest::blinkWithADurationEndsDark()
{
    QFETCH(FakeLed::Files, files);
    QFETCH(int, durationMs);
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed fake(devices, ledName, files);
    Led led(ledName, nullptr);
    led.on();
    led.blink(10000, durationMs);
    QTRY_COMPARE(fake.content(brightness), QByteArray("0"));
    QCOMPARE(fake.content(trigger), QByteArray("none"));
}

void LedBlinkingTest::blinkIsNotCutShort()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName);
    Led led(ledName, nullptr);
    QElapsedTimer clock;
    clock.start();
    led.blink(500, 100);
    while (files.content(trigger) == "timer") {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QVERIFY2(clock.elapsed() >= 100, qPrintable(QString::number(clock.elapsed())));
}

void LedBlinkingTest::callBeforeTheDurationIsOverCancelsIt_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QString>("expectedTrigger");
    QTest::newRow("on") << Call([](Led &led) { led.on(); }) << "none"_s;
    QTest::newRow("blink for good") << Call([](Led &led) { led.blink(500, untilToldOtherwise); })
                                    << "timer"_s;
    QTest::newRow("blink for longer") << Call([](Led &led) { led.blink(500, 60000); }) << "timer"_s;
}

void LedBlinkingTest::callBeforeTheDurationIsOverCancelsIt()
{
    QFETCH(Call, call);
    QFETCH(QString, expectedTrigger);
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName);
    const FakeLed laterFiles(devices, "led10"_s);
    Led led(ledName, nullptr);
    Led later("led10"_s, nullptr);
    led.blink(500, 30);
    later.blink(500, 40);
    call(led);
    files.takeWrites();
    QTRY_COMPARE(laterFiles.content(trigger), QByteArray("none"));
    QCOMPARE(files.takeWrites(), QStringList());
    QCOMPARE(files.content(trigger), expectedTrigger.toLatin1());
}

void LedBlinkingTest::withoutTimerTriggerTheLibraryBlinks()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName, FakeLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    led.blink(120, untilToldOtherwise);
    QCOMPARE(files.takeWrites().constFirst(), "trigger=none"_s);
    for (int time = 0; time < 3; ++time) {
        QTRY_COMPARE(files.content(brightness), QByteArray("0"));
        QTRY_COMPARE(files.content(brightness), QByteArray("127"));
    }
}

void LedBlinkingTest::libraryStartsBlinkingLit()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName, FakeLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    led.blink(10000, untilToldOtherwise);
    QCOMPARE(files.content(brightness), QByteArray("127"));
}

void LedBlinkingTest::libraryStartsBlinkingLitEachTime()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName, FakeLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    led.blink(10000, untilToldOtherwise);
    led.off();
    led.blink(10000, untilToldOtherwise);
    QCOMPARE(files.content(brightness), QByteArray("127"));
}

void LedBlinkingTest::libraryKeepsItsRhythmWhenAskedAgain()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName, FakeLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    led.blink(40, untilToldOtherwise);
    QTRY_COMPARE(files.content(brightness), QByteArray("0"));
    files.takeWrites();
    led.blink(40, untilToldOtherwise);
    QCOMPARE(files.takeWrites(), QStringList());
}

void LedBlinkingTest::steadyLightEndsTheLibrarysBlinking()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName, FakeLed::withoutTimerTrigger());
    const FakeLed witnessFiles(devices, "led10"_s, FakeLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    Led witness("led10"_s, nullptr);
    led.blink(10, untilToldOtherwise);
    led.on();
    files.takeWrites();
    witness.blink(100, untilToldOtherwise);
    QTRY_COMPARE(witnessFiles.content(brightness), QByteArray("0"));
    QCOMPARE(files.takeWrites(), QStringList());
    QCOMPARE(files.content(brightness), QByteArray("127"));
}

static const Suite<LedBlinkingTest> ledBlinkingTest;
#include "LedBlinkingTest.moc"
