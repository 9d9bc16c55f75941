#include "LogCapture.h"
#include "MockDevices.h"
#include "MockLed.h"
#include "UnprivilegedScope.h"
#include <libled/Led.h>

#include <functional>
#include <QElapsedTimer>
#include <QtTest>

using test_support::LogCapture;

Q_DECLARE_METATYPE(std::function<void(Led &)>)

namespace {

const QLatin1String brightness("brightness");
const QLatin1String trigger("trigger");
const QLatin1String ledName("led8");

constexpr int untilToldOtherwise = -1;

} // namespace

class LedTest : public QObject
{
    Q_OBJECT

private slots:
    void ledWithoutItsFilesIsInvalid();
    void ledWithoutWritePermissionIsInvalid();
    void callsOnAnInvalidLedDoNothing();
    void onTakesTheTriggerOffAndLightsUpFully();
    void onWithoutMaxBrightnessIs255();
    void onWithAnUnreadableMaxBrightnessIs255();
    void offTakesTheTriggerOffAndTheLightToo();
    void ledOfAKernelWithoutTriggersIsSwitchedByBrightnessAlone();

    void blinkIsLeftToTheKernel();
    void blinkOfALedThatBlinksAlreadyIsLeftToTheKernelToo();
    void blinkWithAnotherPeriodChangesOnlyTheDelays();
    void blinkIsSetUpAnewAfterSteadyLight();
    void steadyLightIsWrittenAnewAfterBlinking();
    void blinkNeverAsksTheKernelForADelayOfZero();
    void sameCallTwiceWritesOnce_data();
    void sameCallTwiceWritesOnce();

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

    void failedWriteIsLoggedOnce();
    void failedWriteIsTriedAgain();
    void failedWriteLeavesNothingThatNeedNotBeWritten();
    void failureAfterASuccessIsLoggedAgain();
    void blinkingOnALedThatWentAwayIsLoggedOnce();
    void fileThatWentAwayIsNotMadeAnew();
};

void LedTest::ledWithoutItsFilesIsInvalid()
{
    const MockDevices devices;
    QVERIFY(!Led(ledName, nullptr).isValid());
}

void LedTest::ledWithoutWritePermissionIsInvalid()
{
    const MockDevices devices;
    const MockLed files(devices, ledName);
    QVERIFY(QFile::setPermissions(devices.realPath({}), letEveryoneIn));
    QVERIFY(QFile::setPermissions(files.realPath(brightness), QFile::ReadOwner | QFile::ReadOther));
    const UnprivilegedScope anyone;
    QVERIFY(QFile::exists(QStringLiteral("/sys/class/leds/led8/brightness")));
    QVERIFY(!Led(ledName, nullptr).isValid());
}

void LedTest::callsOnAnInvalidLedDoNothing()
{
    LogCapture log;
    const MockDevices devices;
    MockLed files(devices, ledName, {{trigger, "[none] timer\n"}});
    MockLed witnessFiles(devices, QStringLiteral("witness"));
    Led led(ledName, nullptr);
    Led witness(QStringLiteral("witness"), nullptr);
    files.takeWrites();
    led.on();
    led.off();
    led.blink(20, 1);
    witness.blink(20, 1);
    QTRY_COMPARE(witnessFiles.content(brightness), QByteArray("0"));
    QCOMPARE(files.takeWrites(), QStringList());
    QCOMPARE(log.takeCriticals(), QStringList());
}

void LedTest::onTakesTheTriggerOffAndLightsUpFully()
{
    const MockDevices devices;
    MockLed files(devices, ledName);
    Led led(ledName, nullptr);
    QVERIFY(led.isValid());
    led.on();
    QCOMPARE(files.takeWrites(),
             (QStringList{QStringLiteral("trigger=none"), QStringLiteral("brightness=127")}));
}

void LedTest::onWithoutMaxBrightnessIs255()
{
    const MockDevices devices;
    const MockLed files(devices, ledName, {{brightness, "0\n"}, {trigger, "[none] timer\n"}});
    Led(ledName, nullptr).on();
    QCOMPARE(files.content(brightness), QByteArray("255"));
}

void LedTest::onWithAnUnreadableMaxBrightnessIs255()
{
    const MockDevices devices;
    const MockLed files(devices, ledName,
                        {{brightness, "0\n"}, {QStringLiteral("max_brightness"), "bright\n"}});
    Led(ledName, nullptr).on();
    QCOMPARE(files.content(brightness), QByteArray("255"));
}

void LedTest::offTakesTheTriggerOffAndTheLightToo()
{
    const MockDevices devices;
    MockLed files(devices, ledName);
    Led(ledName, nullptr).off();
    QCOMPARE(files.takeWrites(),
             (QStringList{QStringLiteral("trigger=none"), QStringLiteral("brightness=0")}));
}

void LedTest::ledOfAKernelWithoutTriggersIsSwitchedByBrightnessAlone()
{
    LogCapture log;
    const MockDevices devices;
    MockLed files(devices, ledName, {{brightness, "0\n"}});
    Led led(ledName, nullptr);
    led.on();
    QCOMPARE(files.takeWrites(), QStringList{QStringLiteral("brightness=255")});
    led.off();
    QCOMPARE(files.takeWrites(), QStringList{QStringLiteral("brightness=0")});
    QCOMPARE(log.takeCriticals(), QStringList());
}

void LedTest::blinkIsLeftToTheKernel()
{
    const MockDevices devices;
    MockLed files(devices, ledName);
    Led(ledName, nullptr).blink(500, untilToldOtherwise);
    QCOMPARE(files.takeWrites(), (QStringList{QStringLiteral("trigger=timer"), QStringLiteral("delay_on=250"),
                                              QStringLiteral("delay_off=250")}));
}

// The trigger in use stands in brackets, as after a restart of the daemon.
void LedTest::blinkOfALedThatBlinksAlreadyIsLeftToTheKernelToo()
{
    const MockDevices devices;
    MockLed::Files blinking = MockLed::kernelBlinking();
    blinking.insert(trigger, "none [timer]\n");
    MockLed files(devices, ledName, blinking);
    Led(ledName, nullptr).blink(500, untilToldOtherwise);
    QCOMPARE(files.takeWrites(), (QStringList{QStringLiteral("trigger=timer"), QStringLiteral("delay_on=250"),
                                              QStringLiteral("delay_off=250")}));
}

void LedTest::blinkWithAnotherPeriodChangesOnlyTheDelays()
{
    const MockDevices devices;
    MockLed files(devices, ledName);
    Led led(ledName, nullptr);
    led.blink(500, untilToldOtherwise);
    files.takeWrites();
    led.blink(1000, untilToldOtherwise);
    QCOMPARE(files.takeWrites(),
             (QStringList{QStringLiteral("delay_on=500"), QStringLiteral("delay_off=500")}));
}

// Setting another trigger makes the kernel forget the delays.
void LedTest::blinkIsSetUpAnewAfterSteadyLight()
{
    const MockDevices devices;
    MockLed files(devices, ledName);
    Led led(ledName, nullptr);
    led.blink(500, untilToldOtherwise);
    led.on();
    files.takeWrites();
    led.blink(500, untilToldOtherwise);
    QCOMPARE(files.takeWrites(), (QStringList{QStringLiteral("trigger=timer"), QStringLiteral("delay_on=250"),
                                              QStringLiteral("delay_off=250")}));
}

// Setting another trigger makes the kernel switch the light off.
void LedTest::steadyLightIsWrittenAnewAfterBlinking()
{
    const MockDevices devices;
    const MockLed files(devices, ledName);
    Led led(ledName, nullptr);
    led.on();
    led.blink(500, untilToldOtherwise);
    files.takeWrites();
    led.on();
    QCOMPARE(files.takeWrites(),
             (QStringList{QStringLiteral("trigger=none"), QStringLiteral("brightness=127")}));
}

void LedTest::blinkNeverAsksTheKernelForADelayOfZero()
{
    const MockDevices devices;
    const MockLed files(devices, ledName);
    Led(ledName, nullptr).blink(0, untilToldOtherwise);
    QCOMPARE(files.content(QStringLiteral("delay_on")), QByteArray("1"));
    QCOMPARE(files.content(QStringLiteral("delay_off")), QByteArray("1"));
}

void LedTest::sameCallTwiceWritesOnce_data()
{
    QTest::addColumn<MockLed::Files>("files");
    QTest::addColumn<std::function<void(Led &)>>("call");
    const std::function<void(Led &)> on = [](Led &led) { led.on(); };
    const std::function<void(Led &)> off = [](Led &led) { led.off(); };
    const std::function<void(Led &)> blink = [](Led &led) { led.blink(500, untilToldOtherwise); };
    QTest::newRow("on") << MockLed::kernelBlinking() << on;
    QTest::newRow("off") << MockLed::kernelBlinking() << off;
    QTest::newRow("blink") << MockLed::kernelBlinking() << blink;
    QTest::newRow("on, no timer trigger") << MockLed::withoutTimerTrigger() << on;
    QTest::newRow("off, no timer trigger") << MockLed::withoutTimerTrigger() << off;
    QTest::newRow("blink, no timer trigger") << MockLed::withoutTimerTrigger() << blink;
}

void LedTest::sameCallTwiceWritesOnce()
{
    QFETCH(MockLed::Files, files);
    QFETCH(std::function<void(Led &)>, call);
    const MockDevices devices;
    MockLed mock(devices, ledName, files);
    Led led(ledName, nullptr);
    call(led);
    QVERIFY(!mock.takeWrites().isEmpty());
    call(led);
    QCOMPARE(mock.takeWrites(), QStringList());
}

void LedTest::blinkWithADurationEndsDark_data()
{
    QTest::addColumn<MockLed::Files>("files");
    QTest::addColumn<int>("durationMs");
    QTest::newRow("by the kernel") << MockLed::kernelBlinking() << 30;
    QTest::newRow("by the kernel, no time at all") << MockLed::kernelBlinking() << 0;
    QTest::newRow("by the library") << MockLed::withoutTimerTrigger() << 30;
    QTest::newRow("by the library, no time at all") << MockLed::withoutTimerTrigger() << 0;
}

void LedTest::blinkWithADurationEndsDark()
{
    QFETCH(MockLed::Files, files);
    QFETCH(int, durationMs);
    const MockDevices devices;
    const MockLed mock(devices, ledName, files);
    Led led(ledName, nullptr);
    led.on();
    led.blink(10000, durationMs);
    QTRY_COMPARE(mock.content(brightness), QByteArray("0"));
    QCOMPARE(mock.content(trigger), QByteArray("none"));
}

void LedTest::blinkIsNotCutShort()
{
    const MockDevices devices;
    const MockLed files(devices, ledName);
    Led led(ledName, nullptr);
    QElapsedTimer clock;
    clock.start();
    led.blink(500, 100);
    while (files.content(trigger) == "timer") {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QVERIFY2(clock.elapsed() >= 100, qPrintable(QString::number(clock.elapsed())));
}

void LedTest::callBeforeTheDurationIsOverCancelsIt_data()
{
    QTest::addColumn<std::function<void(Led &)>>("call");
    QTest::addColumn<QString>("expectedTrigger");
    QTest::newRow("on") << std::function<void(Led &)>([](Led &led) { led.on(); }) << QStringLiteral("none");
    QTest::newRow("blink for good") << std::function<void(Led &)>([](Led &led) {
        led.blink(500, untilToldOtherwise);
    }) << QStringLiteral("timer");
    QTest::newRow("blink for longer")
        << std::function<void(Led &)>([](Led &led) { led.blink(500, 60000); }) << QStringLiteral("timer");
}

void LedTest::callBeforeTheDurationIsOverCancelsIt()
{
    QFETCH(std::function<void(Led &)>, call);
    QFETCH(QString, expectedTrigger);
    const MockDevices devices;
    MockLed files(devices, ledName);
    const MockLed laterFiles(devices, QStringLiteral("led10"));
    Led led(ledName, nullptr);
    Led later(QStringLiteral("led10"), nullptr);
    led.blink(500, 30);
    later.blink(500, 40);
    call(led);
    files.takeWrites();
    QTRY_COMPARE(laterFiles.content(trigger), QByteArray("none"));
    QCOMPARE(files.takeWrites(), QStringList());
    QCOMPARE(files.content(trigger), expectedTrigger.toLatin1());
}

void LedTest::withoutTimerTriggerTheLibraryBlinks()
{
    const MockDevices devices;
    MockLed files(devices, ledName, MockLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    led.blink(120, untilToldOtherwise);
    QCOMPARE(files.takeWrites().constFirst(), QStringLiteral("trigger=none"));
    for (int time = 0; time < 3; ++time) {
        QTRY_COMPARE(files.content(brightness), QByteArray("0"));
        QTRY_COMPARE(files.content(brightness), QByteArray("127"));
    }
}

void LedTest::libraryStartsBlinkingLit()
{
    const MockDevices devices;
    const MockLed files(devices, ledName, MockLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    led.blink(10000, untilToldOtherwise);
    QCOMPARE(files.content(brightness), QByteArray("127"));
}

void LedTest::libraryStartsBlinkingLitEachTime()
{
    const MockDevices devices;
    const MockLed files(devices, ledName, MockLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    led.blink(10000, untilToldOtherwise);
    led.off();
    led.blink(10000, untilToldOtherwise);
    QCOMPARE(files.content(brightness), QByteArray("127"));
}

void LedTest::libraryKeepsItsRhythmWhenAskedAgain()
{
    const MockDevices devices;
    MockLed files(devices, ledName, MockLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    led.blink(40, untilToldOtherwise);
    QTRY_COMPARE(files.content(brightness), QByteArray("0"));
    files.takeWrites();
    led.blink(40, untilToldOtherwise);
    QCOMPARE(files.takeWrites(), QStringList());
}

void LedTest::steadyLightEndsTheLibrarysBlinking()
{
    const MockDevices devices;
    MockLed files(devices, ledName, MockLed::withoutTimerTrigger());
    const MockLed witnessFiles(devices, QStringLiteral("led10"), MockLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    Led witness(QStringLiteral("led10"), nullptr);
    led.blink(10, untilToldOtherwise);
    led.on();
    files.takeWrites();
    witness.blink(100, untilToldOtherwise);
    QTRY_COMPARE(witnessFiles.content(brightness), QByteArray("0"));
    QCOMPARE(files.takeWrites(), QStringList());
    QCOMPARE(files.content(brightness), QByteArray("127"));
}

void LedTest::failedWriteIsLoggedOnce()
{
    LogCapture log;
    const MockDevices devices;
    const MockLed files(devices, ledName);
    Led led(ledName, nullptr);
    files.breakFile(brightness);
    led.on();
    led.off();
    led.on();
    QCOMPARE(log.lines(QStringLiteral("libled")),
             QStringList{QStringLiteral("Writing \"/sys/class/leds/led8/brightness\" failed: "
                                        "\"No space left on device\"")});
    QCOMPARE(log.takeCriticals().size(), 1);
}

void LedTest::failedWriteIsTriedAgain()
{
    const LogCapture log;
    const MockDevices devices;
    const MockLed files(devices, ledName);
    Led led(ledName, nullptr);
    files.breakFile(brightness);
    led.on();
    QCOMPARE(log.lines(QStringLiteral("libled")).size(), 1);
    files.restoreFile(brightness);
    led.on();
    QCOMPARE(files.content(brightness), QByteArray("127"));
}

// Nobody knows how far a failed write came.
void LedTest::failedWriteLeavesNothingThatNeedNotBeWritten()
{
    const LogCapture log;
    const MockDevices devices;
    const MockLed files(devices, ledName);
    Led led(ledName, nullptr);
    led.on();
    files.breakFile(brightness);
    led.off();
    QCOMPARE(log.lines(QStringLiteral("libled")).size(), 1);
    files.restoreFile(brightness);
    files.takeWrites();
    led.on();
    QCOMPARE(files.takeWrites(), QStringList{QStringLiteral("brightness=127")});
}

void LedTest::failureAfterASuccessIsLoggedAgain()
{
    LogCapture log;
    const MockDevices devices;
    const MockLed files(devices, ledName);
    Led led(ledName, nullptr);
    files.breakFile(brightness);
    led.on();
    files.restoreFile(brightness);
    led.on();
    files.breakFile(brightness);
    led.off();
    QCOMPARE(log.takeCriticals().size(), 2);
}

void LedTest::blinkingOnALedThatWentAwayIsLoggedOnce()
{
    LogCapture log;
    const MockDevices devices;
    const MockLed files(devices, ledName, MockLed::withoutTimerTrigger());
    const MockLed witnessFiles(devices, QStringLiteral("led10"), MockLed::withoutTimerTrigger());
    Led led(ledName, nullptr);
    Led witness(QStringLiteral("led10"), nullptr);
    led.blink(10, untilToldOtherwise);
    QVERIFY(QFile::remove(files.realPath(brightness)));
    witness.blink(100, untilToldOtherwise);
    QTRY_COMPARE(witnessFiles.content(brightness), QByteArray("0"));
    QCOMPARE(log.takeCriticals().size(), 1);
}

void LedTest::fileThatWentAwayIsNotMadeAnew()
{
    LogCapture log;
    const MockDevices devices;
    const MockLed files(devices, ledName);
    Led led(ledName, nullptr);
    QVERIFY(QFile::remove(files.realPath(brightness)));
    led.on();
    QVERIFY(!QFile::exists(files.realPath(brightness)));
    QCOMPARE(log.takeCriticals().size(), 1);
}

QTEST_GUILESS_MAIN(LedTest)
#include "tst_led.moc"
