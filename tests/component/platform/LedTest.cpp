#include "LedScene.h"
#include "LogCapture.h"
#include "MockDevices.h"
#include "MockLed.h"
#include "Suite.h"
#include "Text.h"
#include "UnprivilegedScope.h"
#include <libled/Led.h>

#include <QFile>
#include <QTest>

using test_support::LogCapture;

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
    void sameCallTwiceWritesOnce_data();
    void sameCallTwiceWritesOnce();
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
    QVERIFY(QFile::exists("/sys/class/leds/led8/brightness"_s));
    QVERIFY(!Led(ledName, nullptr).isValid());
}

void LedTest::callsOnAnInvalidLedDoNothing()
{
    LogCapture log;
    const MockDevices devices;
    MockLed files(devices, ledName, {{trigger, "[none] timer\n"}});
    MockLed witnessFiles(devices, "witness"_s);
    Led led(ledName, nullptr);
    Led witness("witness"_s, nullptr);
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
    QCOMPARE(files.takeWrites(), (QStringList{"trigger=none"_s, "brightness=127"_s}));
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
    const MockLed files(devices, ledName, {{brightness, "0\n"}, {"max_brightness"_s, "bright\n"}});
    Led(ledName, nullptr).on();
    QCOMPARE(files.content(brightness), QByteArray("255"));
}

void LedTest::offTakesTheTriggerOffAndTheLightToo()
{
    const MockDevices devices;
    MockLed files(devices, ledName);
    Led(ledName, nullptr).off();
    QCOMPARE(files.takeWrites(), (QStringList{"trigger=none"_s, "brightness=0"_s}));
}

void LedTest::ledOfAKernelWithoutTriggersIsSwitchedByBrightnessAlone()
{
    LogCapture log;
    const MockDevices devices;
    MockLed files(devices, ledName, {{brightness, "0\n"}});
    Led led(ledName, nullptr);
    led.on();
    QCOMPARE(files.takeWrites(), QStringList{"brightness=255"_s});
    led.off();
    QCOMPARE(files.takeWrites(), QStringList{"brightness=0"_s});
    QCOMPARE(log.takeCriticals(), QStringList());
}

void LedTest::sameCallTwiceWritesOnce_data()
{
    QTest::addColumn<MockLed::Files>("files");
    QTest::addColumn<Call>("call");
    const Call on = [](Led &led) { led.on(); };
    const Call off = [](Led &led) { led.off(); };
    const Call blink = [](Led &led) { led.blink(500, untilToldOtherwise); };
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
    QFETCH(Call, call);
    const MockDevices devices;
    MockLed mock(devices, ledName, files);
    Led led(ledName, nullptr);
    call(led);
    QVERIFY(!mock.takeWrites().isEmpty());
    call(led);
    QCOMPARE(mock.takeWrites(), QStringList());
}

static const Suite<LedTest> suite;
#include "LedTest.moc"
