#include "Keys.h"
#include "Suite.h"
#include "TestDevice.h"
#include "Text.h"
#include <QTest>

using namespace test_support;

/// The command line: what ends the process at once, and which keyboard is opened.
class CommandLineTest : public QObject
{
    Q_OBJECT
private slots:
    void helpShowsTheDeviceOptionWithItsDefault_data();
    void helpShowsTheDeviceOptionWithItsDefault();
    void versionPrintsNameAndNumber_data();
    void versionPrintsNameAndNumber();
    void wrongCommandLineEndsWithStatusOne_data();
    void wrongCommandLineEndsWithStatusOne();
    void keyboardOfTheCommandLineIsOpened_data();
    void keyboardOfTheCommandLineIsOpened();
    void otherKeyboardsAreLeftAlone();
    void missingKeyboardDoesNotStopTheDaemon_data();
    void missingKeyboardDoesNotStopTheDaemon();
};

namespace {
const QString enableWifi = "connmanctl enable wifi"_s;

bool chordReaches(LonelyDaemon &device, FakeKeyboard &keyboard)
{
    keys::pressChord(keyboard, keys::wifiOn);
    return device.daemon.sandbox().commands().waitForCall(enableWifi)
           // The chord is spoken, but there is nobody to say it.
           && device.daemon.log().takeProblem(
                  "NetworkManager|critical|ERROR: Failed to queue speech-request."_s);
}
} // namespace

void CommandLineTest::helpShowsTheDeviceOptionWithItsDefault_data()
{
    QTest::addColumn<QString>("option");
    QTest::newRow("short") << "-h";
    QTest::newRow("long") << "--help";
}

void CommandLineTest::helpShowsTheDeviceOptionWithItsDefault()
{
    QFETCH(QString, option);
    LonelyDaemon device;
    QVERIFY(device.daemon.start({option}));
    QCOMPARE(device.daemon.waitForExit(), 0);
    // The columns of Qt's help are joined again.
    const QString help = QString::fromUtf8(device.daemon.standardOutput()).simplified();
    QVERIFY2(
        help.contains(
            "-d, --device <device> The keyboard device for user-interaction (default: '/dev/input/event0')."_s),
        qPrintable(help));
    QVERIFY2(help.contains("-h, --help"_s), qPrintable(help));
    QVERIFY2(help.contains("-v, --version"_s), qPrintable(help));
}

void CommandLineTest::versionPrintsNameAndNumber_data()
{
    QTest::addColumn<QString>("option");
    QTest::newRow("short") << "-v";
    QTest::newRow("long") << "--version";
}

void CommandLineTest::versionPrintsNameAndNumber()
{
    QFETCH(QString, option);
    LonelyDaemon device;
    QVERIFY(device.daemon.start({option}));
    QCOMPARE(device.daemon.waitForExit(), 0);
    QCOMPARE(device.daemon.standardOutput(), QByteArray("network-manager 1.14.0\n"));
}

void CommandLineTest::wrongCommandLineEndsWithStatusOne_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("unknown option") << QStringList{"--bogus"_s} << "network-manager: Unknown option 'bogus'.";
    QTest::newRow("short without value")
        << QStringList{"-d"_s} << "network-manager: Missing value after '-d'.";
    QTest::newRow("long without value")
        << QStringList{"--device"_s} << "network-manager: Missing value after '--device'.";
}

void CommandLineTest::wrongCommandLineEndsWithStatusOne()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);
    LonelyDaemon device;
    QVERIFY(device.daemon.start(arguments));
    QCOMPARE(device.daemon.waitForExit(), 1);
    QVERIFY(device.daemon.log().takeProblem(complaint));
}

void CommandLineTest::keyboardOfTheCommandLineIsOpened_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("node");
    QTest::newRow("default") << QStringList() << "event0";
    QTest::newRow("short") << QStringList{"-d"_s, "/dev/input/event5"_s} << "event5";
    QTest::newRow("short, joined") << QStringList{"-d/dev/input/event6"_s} << "event6";
    QTest::newRow("long") << QStringList{"--device"_s, "/dev/input/event7"_s} << "event7";
    QTest::newRow("long, joined") << QStringList{"--device=/dev/input/event8"_s} << "event8";
}

void CommandLineTest::keyboardOfTheCommandLineIsOpened()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, node);
    LonelyDaemon device;
    DaemonSandbox &sandbox = device.daemon.sandbox();
    FakeKeyboard &keyboard = node == "event0"_s ? sandbox.keyboard() : sandbox.devices().addKeyboard(node);
    QVERIFY(device.start(arguments));
    QVERIFY(chordReaches(device, keyboard));
}

void CommandLineTest::otherKeyboardsAreLeftAlone()
{
    LonelyDaemon device;
    DaemonSandbox &sandbox = device.daemon.sandbox();
    FakeKeyboard &chosen = sandbox.devices().addKeyboard("event5"_s);
    QVERIFY(device.start({"--device"_s, "/dev/input/event5"_s}));
    keys::pressChord(sandbox.keyboard(), keys::wifiOff);
    QVERIFY(chordReaches(device, chosen));
    QCOMPARE(sandbox.commands().calls(), QStringList(enableWifi));
}

void CommandLineTest::missingKeyboardDoesNotStopTheDaemon_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("reason");
    QTest::newRow("nothing there") << "/dev/input/event9"_s
                                   << "No such file or directory"_s;
    QTest::newRow("not a keyboard") << "/proc/version"_s << FakeKeyboard::answerOfOtherFiles();
    QTest::newRow("empty path") << QString() << "No such file or directory"_s;
}

void CommandLineTest::missingKeyboardDoesNotStopTheDaemon()
{
    QFETCH(QString, device);
    QFETCH(QString, reason);
    LonelyDaemon lonely;
    lonely.daemon.setLoggingRules("NetworkManager=true"_s);
    QVERIFY(lonely.start({"--device"_s, device}));
    QCOMPARE(lonely.client.call("getHostName").toString(), "printer"_s);
    // The daemon itself says nothing: it listens to a keyboard only once that is open.
    const QString line = "libkeyboard|critical|Keyboard error: \"%1: %2\""_s.arg(device, reason);
    QCOMPARE(lonely.daemon.log().lines(), QStringList(line));
    QVERIFY(lonely.daemon.log().takeProblem(line));
}

static const Suite<CommandLineTest> commandLineTest;
#include "CommandLineTest.moc"
