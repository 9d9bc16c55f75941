#include "MockDevices.h"
#include "MockKeyboard.h"
#include "UnprivilegedScope.h"
#include <libkeyboard/Keyboard.h>

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using libkeyboard::Keyboard;

namespace {

const QLatin1String device("/dev/input/event0");
constexpr int modifier = 32;
constexpr int anotherKey = 37;

/// What a keyboard reports, in order: "down 32", "up 32", "error <message>".
class Report : public QObject
{
    Q_OBJECT

public:
    explicit Report(const Keyboard &keyboard)
    {
        QObject::connect(&keyboard, &Keyboard::keyDown, this,
                         [this](Keyboard::Key key) { add(QStringLiteral("down"), key); });
        QObject::connect(&keyboard, &Keyboard::keyUp, this,
                         [this](Keyboard::Key key) { add(QStringLiteral("up"), key); });
        QObject::connect(&keyboard, &Keyboard::error, this, [this](const QString &message) {
            lines.append(QStringLiteral("error ") + message);
        });
    }

    QStringList lines;

private:
    void add(const QString &what, Keyboard::Key key)
    {
        lines.append(QStringLiteral("%1 %2").arg(what).arg(static_cast<int>(key)));
    }
};

} // namespace

class KeyboardTest : public QObject
{
    Q_OBJECT

private slots:
    void openDeviceIsOpenAndSilent();
    void deviceCanBeGivenLater();
    void openingTwiceIsOpeningOnce();
    void deviceIsNotGrabbed();
    void keysAreReportedByTheirEvdevCode();
    void keysCanBeRecordedAndQueued();
    void autoRepeatIsNotReported();
    void nothingIsReportedOutsideTheEventLoop();

    void keyReleasedDuringAnOverrunDoesNotStayHeld();
    void keyPressedDuringAnOverrunIsReported();
    void keyThatDidNotChangeDuringAnOverrunIsNotReported();
    void keysAfterAnOverrunAreReportedAsEver();

    void vanishedDeviceGivesOneErrorAndCloses();
    void deviceThatHangsUpGivesOneErrorAndCloses();
    void keysBeforeTheHangUpAreReportedFirst();
    void keyboardWorksAgainAfterItsDeviceVanished();

    void failedOpenGivesOneErrorFromTheEventLoop_data();
    void failedOpenGivesOneErrorFromTheEventLoop();

    void closedKeyboardReportsNothing();
    void closingInAHandlerEndsTheReports();
    void closedKeyboardCanBeOpenedAgain();
    void openKeyboardKeepsItsDeviceWhenGivenAnother();
};

void KeyboardTest::openDeviceIsOpenAndSilent()
{
    const MockDevices devices;
    const MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const Report report(keyboard);
    QVERIFY(!keyboard.isOpen());
    QVERIFY(keyboard.open());
    QVERIFY(keyboard.isOpen());
    QCoreApplication::processEvents();
    QCOMPARE(report.lines, QStringList());
}

void KeyboardTest::deviceCanBeGivenLater()
{
    const MockDevices devices;
    const MockKeyboard keys(devices, device);
    Keyboard keyboard;
    keyboard.setDevice(device);
    QVERIFY(keyboard.open());
}

void KeyboardTest::openingTwiceIsOpeningOnce()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const Report report(keyboard);
    QVERIFY(keyboard.open());
    QVERIFY(keyboard.open());
    keys.press(modifier);
    keys.release(modifier);
    QTRY_COMPARE(report.lines, (QStringList{QStringLiteral("down 32"), QStringLiteral("up 32")}));
}

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
    const Report report(keyboard);
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
    const Report report(keyboard);
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
    const Report report(keyboard);
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
    const Report report(keyboard);
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
    const Report report(keyboard);
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
    const Report report(keyboard);
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
    const Report report(keyboard);
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

void KeyboardTest::vanishedDeviceGivesOneErrorAndCloses()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const Report report(keyboard);
    QVERIFY(keyboard.open());
    keys.vanish();
    QTRY_COMPARE(report.lines, QStringList{QStringLiteral("error /dev/input/event0: No such device")});
    QVERIFY(!keyboard.isOpen());
    QCoreApplication::processEvents();
    QCOMPARE(report.lines.size(), 1);
}

void KeyboardTest::deviceThatHangsUpGivesOneErrorAndCloses()
{
    const MockDevices devices;
    const MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const Report report(keyboard);
    QVERIFY(keyboard.open());
    keys.hangUp();
    QTRY_COMPARE(report.lines, QStringList{QStringLiteral("error /dev/input/event0: No such device")});
    QVERIFY(!keyboard.isOpen());
    QCoreApplication::processEvents();
    QCOMPARE(report.lines.size(), 1);
}

void KeyboardTest::keysBeforeTheHangUpAreReportedFirst()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const Report report(keyboard);
    QVERIFY(keyboard.open());
    keys.press(modifier);
    QTRY_COMPARE(report.lines.size(), 1);
    keys.hangUp();
    QTRY_COMPARE(report.lines, (QStringList{QStringLiteral("down 32"),
                                            QStringLiteral("error /dev/input/event0: No such device")}));
}

void KeyboardTest::keyboardWorksAgainAfterItsDeviceVanished()
{
    const MockDevices devices;
    MockKeyboard first(devices, device);
    MockKeyboard second(devices, QStringLiteral("/dev/input/event1"));
    Keyboard keyboard(device);
    const Report report(keyboard);
    QVERIFY(keyboard.open());
    first.vanish();
    QTRY_COMPARE(report.lines.size(), 1);
    keyboard.setDevice(QStringLiteral("/dev/input/event1"));
    QVERIFY(keyboard.open());
    second.press(modifier);
    QTRY_COMPARE(report.lines.constLast(), QStringLiteral("down 32"));
}

void KeyboardTest::failedOpenGivesOneErrorFromTheEventLoop_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing path") << QStringLiteral("/nowhere/event0")
                                  << QStringLiteral("No such file or directory");
    QTest::newRow("no path") << QString() << QStringLiteral("No such file or directory");
    QTest::newRow("file") << QStringLiteral("%1/file") << QStringLiteral("Inappropriate ioctl for device");
    QTest::newRow("directory") << QStringLiteral("%1") << QStringLiteral("Inappropriate ioctl for device");
    QTest::newRow("no permission") << QStringLiteral("%1/forbidden") << QStringLiteral("Permission denied");
    QTest::newRow("file as directory")
        << QStringLiteral("%1/file/event0") << QStringLiteral("Not a directory");
    QTest::newRow("placeholder in the path")
        << QStringLiteral("%1/%2") << QStringLiteral("No such file or directory");
}

void KeyboardTest::failedOpenGivesOneErrorFromTheEventLoop()
{
    QFETCH(QString, path);
    QFETCH(QString, reason);
    const QTemporaryDir directory;
    QVERIFY(QFile(directory.filePath(QStringLiteral("file"))).open(QIODevice::WriteOnly));
    QVERIFY(QFile(directory.filePath(QStringLiteral("forbidden"))).open(QIODevice::WriteOnly));
    QVERIFY(QFile::setPermissions(directory.filePath(QStringLiteral("forbidden")), {}));
    QVERIFY(QFile::setPermissions(directory.path(), letEveryoneIn));
    path.replace(QStringLiteral("%1"), directory.path());
    Keyboard keyboard(path);
    const Report report(keyboard);
    {
        const UnprivilegedScope anyone;
        QVERIFY(!keyboard.open());
    }
    QVERIFY(!keyboard.isOpen());
    QCOMPARE(report.lines, QStringList());
    QCoreApplication::processEvents();
    QCOMPARE(report.lines, QStringList{QStringLiteral("error ") + path + QStringLiteral(": ") + reason});
}

void KeyboardTest::closedKeyboardReportsNothing()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    MockKeyboard witnessKeys(devices, QStringLiteral("/dev/input/event1"));
    Keyboard keyboard(device);
    Keyboard witness(QStringLiteral("/dev/input/event1"));
    const Report report(keyboard);
    const Report witnessReport(witness);
    QVERIFY(keyboard.open());
    QVERIFY(witness.open());
    keys.press(modifier);
    keyboard.close();
    QVERIFY(!keyboard.isOpen());
    witnessKeys.press(modifier);
    QTRY_COMPARE(witnessReport.lines.size(), 1);
    QCOMPARE(report.lines, QStringList());
}

void KeyboardTest::closingInAHandlerEndsTheReports()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const Report report(keyboard);
    QObject::connect(&keyboard, &Keyboard::keyDown, &keyboard, &Keyboard::close);
    QVERIFY(keyboard.open());
    keys.press(modifier);
    keys.press(anotherKey);
    QTRY_VERIFY(!keyboard.isOpen());
    QCOMPARE(report.lines, QStringList{QStringLiteral("down 32")});
}

void KeyboardTest::closedKeyboardCanBeOpenedAgain()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const Report report(keyboard);
    QVERIFY(keyboard.open());
    keyboard.close();
    QVERIFY(keyboard.open());
    keys.press(modifier);
    QTRY_COMPARE(report.lines, QStringList{QStringLiteral("down 32")});
}

void KeyboardTest::openKeyboardKeepsItsDeviceWhenGivenAnother()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    Keyboard keyboard(device);
    const Report report(keyboard);
    QVERIFY(keyboard.open());
    keyboard.setDevice(QStringLiteral("/dev/input/event1"));
    keys.vanish();
    QTRY_COMPARE(report.lines, QStringList{QStringLiteral("error /dev/input/event0: No such device")});
}

QTEST_GUILESS_MAIN(KeyboardTest)
#include "tst_keyboard.moc"
