#include "KeyboardScene.h"
#include "Suite.h"
#include "Text.h"
#include <libkeyboard/Keyboard.h>

#include <QSignalSpy>
#include <QTest>

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
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    QVERIFY(!scene.keys.isGrabbed());
}

void KeyboardTest::keysAreReportedByTheirEvdevCode()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keys.press(modifier);
    scene.keys.press(anotherKey);
    scene.keys.release(anotherKey);
    scene.keys.release(modifier);
    QTRY_COMPARE(scene.report.lines, (QStringList{"down 32"_s, "down 37"_s, "up 37"_s, "up 32"_s}));
}

void KeyboardTest::keysCanBeRecordedAndQueued()
{
    KeyboardScene scene;
    QSignalSpy down(&scene.keyboard, &Keyboard::keyDown);
    Keyboard::Key queued{};
    QObject::connect(
        &scene.keyboard, &Keyboard::keyDown, this, [&queued](Keyboard::Key key) { queued = key; },
        Qt::QueuedConnection);
    QVERIFY(scene.keyboard.open());
    scene.keys.press(modifier);
    QTRY_COMPARE(queued, Keyboard::Key{modifier});
    QCOMPARE(down.size(), 1);
    QCOMPARE(down.constFirst().constFirst().value<Keyboard::Key>(), Keyboard::Key{modifier});
}

void KeyboardTest::autoRepeatIsNotReported()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keys.press(modifier);
    scene.keys.repeat(modifier);
    scene.keys.repeat(modifier);
    scene.keys.release(modifier);
    QTRY_COMPARE(scene.report.lines, (QStringList{"down 32"_s, "up 32"_s}));
}

void KeyboardTest::nothingIsReportedOutsideTheEventLoop()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keys.press(modifier);
    scene.keyboard.open();
    scene.keyboard.setDevice("/dev/input/event1"_s);
    QCOMPARE(scene.report.lines, QStringList());
    QTRY_COMPARE(scene.report.lines, QStringList{"down 32"_s});
}

void KeyboardTest::keyReleasedDuringAnOverrunDoesNotStayHeld()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keys.press(modifier);
    QTRY_COMPARE(scene.report.lines, QStringList{"down 32"_s});
    scene.keys.releaseUnseen(modifier);
    scene.keys.overrun();
    QTRY_COMPARE(scene.report.lines, (QStringList{"down 32"_s, "up 32"_s}));
}

void KeyboardTest::keyPressedDuringAnOverrunIsReported()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keys.pressUnseen(modifier);
    scene.keys.overrun();
    QTRY_COMPARE(scene.report.lines, QStringList{"down 32"_s});
}

void KeyboardTest::keyThatDidNotChangeDuringAnOverrunIsNotReported()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keys.press(modifier);
    QTRY_COMPARE(scene.report.lines.size(), 1);
    scene.keys.pressUnseen(anotherKey);
    scene.keys.overrun();
    QTRY_COMPARE(scene.report.lines, (QStringList{"down 32"_s, "down 37"_s}));
}

void KeyboardTest::keysAfterAnOverrunAreReportedAsEver()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keys.pressUnseen(modifier);
    scene.keys.overrun();
    QTRY_COMPARE(scene.report.lines.size(), 1);
    scene.keys.press(anotherKey);
    scene.keys.repeat(anotherKey);
    scene.keys.release(anotherKey);
    scene.keys.release(modifier);
    QTRY_COMPARE(scene.report.lines, (QStringList{"down 32"_s, "down 37"_s, "up 37"_s, "up 32"_s}));
}

static const Suite<KeyboardTest> keyboardTest;
#include "KeyboardTest.moc"
