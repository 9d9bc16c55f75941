#include "KeyboardScene.h"
#include "Suite.h"
#include "Text.h"
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
    const QDir all("/proc/self/fd"_s);
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
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    devices.addKeyboard(node);
    const QVector<int> before = descriptorsOf(devices.root() + device);
    {
        Keyboard keyboard(device);
        QVERIFY(keyboard.open());
        const QVector<int> opened = descriptorsOf(devices.root() + device);
        QCOMPARE(opened.size(), before.size() + 1);
        for (const int descriptor : opened) {
            QVERIFY(before.contains(descriptor) || (fcntl(descriptor, F_GETFD) & FD_CLOEXEC) != 0);
        }
    }
    QCOMPARE(descriptorsOf(devices.root() + device), before);
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
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    devices.addKeyboard(node);
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
    QTRY_COMPARE(scene.report.lines, (QStringList{"down 32"_s, "up 32"_s}));
}

void KeyboardOpeningTest::vanishedDeviceGivesOneErrorAndCloses()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keys.vanish();
    QTRY_COMPARE(scene.report.lines, QStringList{"error /dev/input/event0: No such device"_s});
    QVERIFY(!scene.keyboard.isOpen());
    QCoreApplication::processEvents();
    QCOMPARE(scene.report.lines.size(), 1);
}

void KeyboardOpeningTest::deviceThatHangsUpGivesOneErrorAndCloses()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keys.hangUp();
    QTRY_COMPARE(scene.report.lines, QStringList{"error /dev/input/event0: No such device"_s});
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
    QTRY_COMPARE(scene.report.lines, (QStringList{"down 32"_s, "error /dev/input/event0: No such device"_s}));
}

void KeyboardOpeningTest::keyboardWorksAgainAfterItsDeviceVanished()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeKeyboard &first = devices.addKeyboard(node);
    FakeKeyboard &second = devices.addKeyboard("event1"_s);
    Keyboard keyboard(device);
    const KeyboardReport report(keyboard);
    QVERIFY(keyboard.open());
    first.vanish();
    QTRY_COMPARE(report.lines.size(), 1);
    keyboard.setDevice("/dev/input/event1"_s);
    QVERIFY(keyboard.open());
    second.press(modifier);
    QTRY_COMPARE(report.lines.constLast(), "down 32"_s);
}

void KeyboardOpeningTest::failedOpenGivesOneErrorFromTheEventLoop_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing path") << "/nowhere/event0"_s
                                  << "No such file or directory"_s;
    QTest::newRow("no path") << QString() << "No such file or directory"_s;
    QTest::newRow("file") << "%1/file"_s << FakeKeyboard::answerOfOtherFiles();
    QTest::newRow("directory") << "%1"_s << FakeKeyboard::answerOfOtherFiles();
    QTest::newRow("no permission") << "%1/forbidden"_s
                                   << "Permission denied"_s;
    QTest::newRow("file as directory") << "%1/file/event0"_s
                                       << "Not a directory"_s;
    QTest::newRow("placeholder in the path") << "%1/%2"_s
                                             << "No such file or directory"_s;
}

void KeyboardOpeningTest::failedOpenGivesOneErrorFromTheEventLoop()
{
    QFETCH(QString, path);
    QFETCH(QString, reason);
    const QTemporaryDir directory;
    QVERIFY(QFile(directory.filePath("file"_s)).open(QIODevice::WriteOnly));
    QVERIFY(QFile(directory.filePath("forbidden"_s)).open(QIODevice::WriteOnly));
    QVERIFY(QFile::setPermissions(directory.filePath("forbidden"_s), {}));
    QVERIFY(QFile::setPermissions(directory.path(), letEveryoneIn));
    path.replace("%1"_s, directory.path());
    Keyboard keyboard(path);
    const KeyboardReport report(keyboard);
    {
        const UnprivilegedScope anyone;
        QVERIFY(!keyboard.open());
    }
    QVERIFY(!keyboard.isOpen());
    QCOMPARE(report.lines, QStringList());
    QCoreApplication::processEvents();
    QCOMPARE(report.lines, QStringList{"error "_s + path + ": "_s + reason});
}

void KeyboardOpeningTest::closedKeyboardReportsNothing()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    FakeKeyboard &keys = devices.addKeyboard(node);
    FakeKeyboard &witnessKeys = devices.addKeyboard("event1"_s);
    Keyboard keyboard(device);
    Keyboard witness("/dev/input/event1"_s);
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
    QCOMPARE(scene.report.lines, QStringList{"down 32"_s});
}

void KeyboardOpeningTest::closedKeyboardCanBeOpenedAgain()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keyboard.close();
    QVERIFY(scene.keyboard.open());
    scene.keys.press(modifier);
    QTRY_COMPARE(scene.report.lines, QStringList{"down 32"_s});
}

void KeyboardOpeningTest::openKeyboardKeepsItsDeviceWhenGivenAnother()
{
    KeyboardScene scene;
    QVERIFY(scene.keyboard.open());
    scene.keyboard.setDevice("/dev/input/event1"_s);
    scene.keys.vanish();
    QTRY_COMPARE(scene.report.lines, QStringList{"error /dev/input/event0: No such device"_s});
}

static const Suite<KeyboardOpeningTest> keyboardOpeningTest;
#include "KeyboardOpeningTest.moc"
