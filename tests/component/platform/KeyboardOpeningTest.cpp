#include "KeyboardScene.h"
#include "MockDevices.h"
#include "MockKeyboard.h"
#include "Suite.h"
#include "UnprivilegedScope.h"
#include <libkeyboard/Keyboard.h>

#include <fcntl.h>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

namespace {

/// This process's descriptors that lead to a file.
QVector<int> descriptorsOf(const QString &path)
{
    const QString file = QFileInfo(path).canonicalFilePath();
    QVector<int> descriptors;
    const QDir all(QStringLiteral("/proc/self/fd"));
    const QStringList numbers = all.entryList(QDir::Files | QDir::System);
    for (const QString &number : numbers) {
        if (QFile::symLinkTarget(all.filePath(number)) == file) {
            descriptors.append(number.toInt());
        }
    }
    return descriptors;
}

} // namespace

/// Opening and closing, by the program or by the device itself.
class KeyboardOpeningTest : public QObject
{
    Q_OBJECT

private slots:
    void deviceIsOpenForThisProcessOnlyAndAsLongAsTheKeyboard();
    void openDeviceIsOpenAndSilent();
    void deviceCanBeGivenLater();
    void openingTwiceIsOpeningOnce();
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

void KeyboardOpeningTest::deviceIsOpenForThisProcessOnlyAndAsLongAsTheKeyboard()
{
    const MockDevices devices;
    const MockKeyboard keys(devices, device);
    const QVector<int> before = descriptorsOf(devices.realPath(device));
    {
        Keyboard keyboard(device);
        QVERIFY(keyboard.open());
        const QVector<int> opened = descriptorsOf(devices.realPath(device));
        QCOMPARE(opened.size(), before.size() + 1);
        for (const int descriptor : opened) {
            QVERIFY(before.contains(descriptor) || (fcntl(descriptor, F_GETFD) & FD_CLOEXEC) != 0);
        }
    }
    QCOMPARE(descriptorsOf(devices.realPath(device)), before);
}

void KeyboardOpeningTest::openDeviceIsOpenAndSilent()
{
    KeyboardScene scene;
    QVERIFY(!scene.keyboard.isOpen());
    QVERIFY(scene.keyboard.open());
    QVERIFY(scene.keyboard.isOpen());
    QCoreApplication::processEvents();
    QCOMPARE(scene.report.lines, QStringList());
}

void KeyboardOpeningTest::deviceCanBeGivenLater()
{
    const MockDevices devices;
    const MockKeyboard keys(devices, device);
    Keyboard keyboard;
    keyboard.setDevice(device);
    QVERIFY(keyboard.open());
}

void KeyboardOpeningTest::openingTwiceIsOpeningOnce()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    QVERIFY(scene.keyboard.open());
    scene.keys.press(modifier);
    scene.keys.release(modifier);
    QTRY_COMPARE(scene.report.lines, (QStringList{QStringLiteral("down 32"), QStringLiteral("up 32")}));
}

void KeyboardOpeningTest::vanishedDeviceGivesOneErrorAndCloses()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keys.vanish();
    QTRY_COMPARE(scene.report.lines, QStringList{QStringLiteral("error /dev/input/event0: No such device")});
    QVERIFY(!scene.keyboard.isOpen());
    QCoreApplication::processEvents();
    QCOMPARE(scene.report.lines.size(), 1);
}

void KeyboardOpeningTest::deviceThatHangsUpGivesOneErrorAndCloses()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keys.hangUp();
    QTRY_COMPARE(scene.report.lines, QStringList{QStringLiteral("error /dev/input/event0: No such device")});
    QVERIFY(!scene.keyboard.isOpen());
    QCoreApplication::processEvents();
    QCOMPARE(scene.report.lines.size(), 1);
}

void KeyboardOpeningTest::keysBeforeTheHangUpAreReportedFirst()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keys.press(modifier);
    QTRY_COMPARE(scene.report.lines.size(), 1);
    scene.keys.hangUp();
    QTRY_COMPARE(
        scene.report.lines,
        (QStringList{QStringLiteral("down 32"), QStringLiteral("error /dev/input/event0: No such device")}));
}

void KeyboardOpeningTest::keyboardWorksAgainAfterItsDeviceVanished()
{
    const MockDevices devices;
    MockKeyboard first(devices, device);
    MockKeyboard second(devices, QStringLiteral("/dev/input/event1"));
    Keyboard keyboard(device);
    const KeyboardReport report(keyboard);
    QVERIFY(keyboard.open());
    first.vanish();
    QTRY_COMPARE(report.lines.size(), 1);
    keyboard.setDevice(QStringLiteral("/dev/input/event1"));
    QVERIFY(keyboard.open());
    second.press(modifier);
    QTRY_COMPARE(report.lines.constLast(), QStringLiteral("down 32"));
}

void KeyboardOpeningTest::failedOpenGivesOneErrorFromTheEventLoop_data()
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

void KeyboardOpeningTest::failedOpenGivesOneErrorFromTheEventLoop()
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
    const KeyboardReport report(keyboard);
    {
        const UnprivilegedScope anyone;
        QVERIFY(!keyboard.open());
    }
    QVERIFY(!keyboard.isOpen());
    QCOMPARE(report.lines, QStringList());
    QCoreApplication::processEvents();
    QCOMPARE(report.lines, QStringList{QStringLiteral("error ") + path + QStringLiteral(": ") + reason});
}

void KeyboardOpeningTest::closedKeyboardReportsNothing()
{
    const MockDevices devices;
    MockKeyboard keys(devices, device);
    MockKeyboard witnessKeys(devices, QStringLiteral("/dev/input/event1"));
    Keyboard keyboard(device);
    Keyboard witness(QStringLiteral("/dev/input/event1"));
    const KeyboardReport report(keyboard);
    const KeyboardReport witnessReport(witness);
    QVERIFY(keyboard.open());
    QVERIFY(witness.open());
    keys.press(modifier);
    keyboard.close();
    QVERIFY(!keyboard.isOpen());
    witnessKeys.press(modifier);
    QTRY_COMPARE(witnessReport.lines.size(), 1);
    QCOMPARE(report.lines, QStringList());
}

void KeyboardOpeningTest::closingInAHandlerEndsTheReports()
{
    KeyboardScene scene;
    QObject::connect(&scene.keyboard, &Keyboard::keyDown, &scene.keyboard, &Keyboard::close);
    QVERIFY(scene.keyboard.open());
    scene.keys.press(modifier);
    scene.keys.press(anotherKey);
    QTRY_VERIFY(!scene.keyboard.isOpen());
    QCOMPARE(scene.report.lines, QStringList{QStringLiteral("down 32")});
}

void KeyboardOpeningTest::closedKeyboardCanBeOpenedAgain()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keyboard.close();
    QVERIFY(scene.keyboard.open());
    scene.keys.press(modifier);
    QTRY_COMPARE(scene.report.lines, QStringList{QStringLiteral("down 32")});
}

void KeyboardOpeningTest::openKeyboardKeepsItsDeviceWhenGivenAnother()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keyboard.setDevice(QStringLiteral("/dev/input/event1"));
    scene.keys.vanish();
    QTRY_COMPARE(scene.report.lines, QStringList{QStringLiteral("error /dev/input/event0: No such device")});
}

static const Suite<KeyboardOpeningTest> suite;
#include "KeyboardOpeningTest.moc"
