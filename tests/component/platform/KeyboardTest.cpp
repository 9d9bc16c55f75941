#include "KeyboardReport.h"
#include "MockDevices.h"
#include "MockKeyboard.h"
#include "Suite.h"
#include <libkeyboard/Keyboard.h>

#include <QSignalSpy>
#include <QTest>

using libkeyboard::Keyboard;

namespace {

const QLatin1String device("/dev/input/event0");
constexpr int modifier = 32;
constexpr int anotherKey = 37;

} // namespace

/// The keys of an open keyboard.
class KeyboardTest : public QObject
{
    Q_OBJECT

private slots:
    void deviceIsNotGrabbed();
    void keysAreReportedByTheirEvdevCode();
    void keysCanBeRecordedAndQueued();
    void autoRepeatIsNotReported();
    void nothingIsReportedOutsideTheEventLoop();
    void keyReleasedDuringAnOverrunDoesNotStayHeld();
    void keyPressedDuringAnOverrunIsReported();
    void keyThatDidNotChangeDuringAnOverrunIsNotReported();
    void keysAfterAnOverrunAreReportedAsEver();
};

void KeyboardTest::deviceIsNotGrabbed()
{
    const MockDevices devices;
    const MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    QVERIFY(keyboard.open());
    QVERIFY(!keys.isGrabbed());
}

void KeyboardTest::keysAreReportedByTheirEvdevCode()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const KeyboardReport report(keyboard);
    QVERIFY(keyboard.open());
    keys.press(modifier);
    keys.press(anotherKey);
    keys.release(anotherKey);
    keys.release(modifier);
    QTRY_COMPARE(report.lines, (QStringList{QStringLiteral("down 32"), QStringLiteral("down 37"),
                                            QStringLiteral("up 37"), QStringLiteral("up 32")}));
}

void KeyboardTest::keysCanBeRecordedAndQueued()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    QSignalSpy down(&keyboard, &Keyboard::keyDown);
    Keyboard::Key queued{};
    QObject::connect(
        &keyboard, &Keyboard::keyDown, this, [&queued](Keyboard::Key key) { queued = key; },
        Qt::QueuedConnection);
    QVERIFY(keyboard.open());
    keys.press(modifier);
    QTRY_COMPARE(queued, Keyboard::Key{modifier});
    QCOMPARE(down.size(), 1);
    QCOMPARE(down.constFirst().constFirst().value<Keyboard::Key>(), Keyboard::Key{modifier});
}

void KeyboardTest::autoRepeatIsNotReported()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const KeyboardReport report(keyboard);
    QVERIFY(keyboard.open());
    keys.press(modifier);
    keys.repeat(modifier);
    keys.repeat(modifier);
    keys.release(modifier);
    QTRY_COMPARE(report.lines, (QStringList{QStringLiteral("down 32"), QStringLiteral("up 32")}));
}

void KeyboardTest::nothingIsReportedOutsideTheEventLoop()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const KeyboardReport report(keyboard);
    QVERIFY(keyboard.open());
    keys.press(modifier);
    keyboard.open();
    keyboard.setDevice(QStringLiteral("/dev/input/event1"));
    QCOMPARE(report.lines, QStringList());
    QTRY_COMPARE(report.lines, QStringList{QStringLiteral("down 32")});
}

void KeyboardTest::keyReleasedDuringAnOverrunDoesNotStayHeld()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const KeyboardReport report(keyboard);
    QVERIFY(keyboard.open());
    keys.press(modifier);
    QTRY_COMPARE(report.lines, QStringList{QStringLiteral("down 32")});
    keys.releaseUnseen(modifier);
    keys.overrun();
    QTRY_COMPARE(report.lines, (QStringList{QStringLiteral("down 32"), QStringLiteral("up 32")}));
}

void KeyboardTest::keyPressedDuringAnOverrunIsReported()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const KeyboardReport report(keyboard);
    QVERIFY(keyboard.open());
    keys.pressUnseen(modifier);
    keys.overrun();
    QTRY_COMPARE(report.lines, QStringList{QStringLiteral("down 32")});
}

void KeyboardTest::keyThatDidNotChangeDuringAnOverrunIsNotReported()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const KeyboardReport report(keyboard);
    QVERIFY(keyboard.open());
    keys.press(modifier);
    QTRY_COMPARE(report.lines.size(), 1);
    keys.pressUnseen(anotherKey);
    keys.overrun();
    QTRY_COMPARE(report.lines, (QStringList{QStringLiteral("down 32"), QStringLiteral("down 37")}));
}

void KeyboardTest::keysAfterAnOverrunAreReportedAsEver()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const KeyboardReport report(keyboard);
    QVERIFY(keyboard.open());
    keys.pressUnseen(modifier);
    keys.overrun();
    QTRY_COMPARE(report.lines.size(), 1);
    keys.press(anotherKey);
    keys.repeat(anotherKey);
    keys.release(anotherKey);
    keys.release(modifier);
    QTRY_COMPARE(report.lines, (QStringList{QStringLiteral("down 32"), QStringLiteral("down 37"),
                                            QStringLiteral("up 37"), QStringLiteral("up 32")}));
}

static const Suite<KeyboardTest> suite;
#include "KeyboardTest.moc"
