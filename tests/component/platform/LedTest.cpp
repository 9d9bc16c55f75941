#include "FakeLed.h"
#include "LedScene.h"
#include "LogCapture.h"
#include "Suite.h"
#include "Text.h"
#include "UnprivilegedScope.h"
#include <libled/Led.h>

#include <QFile>
#include <QTest>

using test_support::FakeDevices;
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
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    QVERIFY(!Led(ledName, nullptr).isValid());
}

void LedTest::ledWithoutWritePermissionIsInvalid()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName);
    QVERIFY(QFile::setPermissions(devices.root(), letEveryoneIn));
    QVERIFY(QFile::setPermissions(files.realPath(brightness), QFile::ReadOwner | QFile::ReadOther));
    const UnprivilegedScope anyone;
    QVERIFY(QFile::exists("/sys/class/leds/led8/brightness"_s));
    QVERIFY(!Led(ledName, nullptr).isValid());
}

void LedTest::callsOnAnInvalidLedDoNothing()
{
    LogCapture log;
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName, {{trigger, "[none] timer\n"}});
    FakeLed witnessFiles(devices, "witness"_s);
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
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName);
    Led led(ledName, nullptr);
    QVERIFY(led.isValid());
    led.on();
    QCOMPARE(files.takeWrites(), (QStringList{"trigger=none"_s, "brightness=127"_s}));
}

void LedTest::onWithoutMaxBrightnessIs255()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName, {{brightness, "0\n"}, {trigger, "[none] timer\n"}});
    Led(ledName, nullptr).on();
    QCOMPARE(files.content(brightness), QByteArray("255"));
}

void LedTest::onWithAnUnreadableMaxBrightnessIs255()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    const FakeLed files(devices, ledName, {{brightness, "0\n"}, {"max_brightness"_s, "bright\n"}});
    Led(ledName, nullptr).on();
    QCOMPARE(files.content(brightness), QByteArray("255"));
}

void LedTest::offTakesTheTriggerOffAndTheLightToo()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName);
    Led(ledName, nullptr).off();
    QCOMPARE(files.takeWrites(), (QStringList{"trigger=none"_s, "brightness=0"_s}));
}

void LedTest::ledOfAKernelWithoutTriggersIsSwitchedByBrightnessAlone()
{
    LogCapture log;
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed files(devices, ledName, {{brightness, "0\n"}});
    Led led(ledName, nullptr);
    led.on();
    QCOMPARE(files.takeWrites(), QStringList{"brightness=255"_s});
    led.off();
    QCOMPARE(files.takeWrites(), QStringList{"brightness=0"_s});
    QCOMPARE(log.takeCriticals(), QStringList());
}

void LedTest::sameCallTwiceWritesOnce_data()
{
    QTest::addColumn<FakeLed::Files>("files");
    QTest::addColumn<Call>("call");
    const Call on = [](Led &led) { led.on(); };
    const Call off = [](Led &led) { led.off(); };
    const Call blink = [](Led &led) { led.blink(500, untilToldOtherwise); };
    QTest::newRow("on") << FakeLed::kernelBlinking() << on;
    QTest::newRow("off") << FakeLed::kernelBlinking() << off;
    QTest::newRow("blink") << FakeLed::kernelBlinking() << blink;
    QTest::newRow("on, no timer trigger") << FakeLed::withoutTimerTrigger() << on;
    QTest::newRow("off, no timer trigger") << FakeLed::withoutTimerTrigger() << off;
    QTest::newRow("blink, no timer trigger") << FakeLed::withoutTimerTrigger() << blink;
}

void LedTest::sameCallTwiceWritesOnce()
{
    QFETCH(FakeLed::Files, files);
    QFETCH(Call, call);
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeLed fake(devices, ledName, files);
    Led led(ledName, nullptr);
    call(led);
    QVERIFY(!fake.takeWrites().isEmpty());
    call(led);
    QCOMPARE(fake.takeWrites(), QStringList());
}

static const Suite<LedTest> ledTest;
#include "LedTest.moc"
