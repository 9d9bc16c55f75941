// The console of the simulated device as a program: from a pipe, on a terminal, and as the bus of other
// programs.
#include "PipedProgram.h"
#include "Suite.h"
#include "TerminalProgram.h"
#include "TestDevice.h"
#include "Text.h"
#include <csignal>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QTest>

using namespace test_support;

namespace {

const QString console = QStringLiteral(CONSOLE_PROGRAM);
const QString prompt = "printer> "_s;
const QString controlC = "\x03"_s;
const QString daemonName = "com.tactora.NetworkManager"_s;

/// The console with all its input.
struct Script : PipedProgram
{
    explicit Script(const QString &input, const QStringList &arguments = {})
        : PipedProgram(console, arguments)
    {
        type(input);
        closeInput();
    }
};

} // namespace

class ConsoleProgramsTest : public QObject
{
    Q_OBJECT
private slots:
    void pipedCommandsRunOneAfterTheOther();
    void commandThatIsNotUnderstoodIsTheStatus_data();
    void commandThatIsNotUnderstoodIsTheStatus();
    void restartedDaemonsLedIsSeenBlinking();

    void eventsComeAboveTheLineThatIsTyped();
    void namesAreCompleted();
    void interruptEndsItWithoutAWordOfFailure();

    void busIsOfferedUntilTheInputIsClosed();
    void busIsOfferedUntilTerminated();
    void shellSeesTheBusAndThePrograms();
    void daemonIsWrapped();
    void versionIsTold();
};

void ConsoleProgramsTest::pipedCommandsRunOneAfterTheOther()
{
    Script script("list\nactive\ndaemon stop\ndaemon start\npower\nexit\nlist\n"_s);
    QCOMPARE(script.waitForExit(), 0);
    QStringList replies = script.output().split(QLatin1Char('\n')).filter(" reply: "_s);
    QCOMPARE(replies.size(), 5);
    QVERIFY2(replies.at(2).endsWith(" reply: 2 networks"_s), qPrintable(replies.at(2)));
    QVERIFY2(replies.at(3).contains(" reply: activeNetworks "_s), qPrintable(replies.at(3)));
    QVERIFY2(replies.at(4).contains(" reply: getWifiPower "_s), qPrintable(replies.at(4)));
    QVERIFY2(!replies.at(4).contains("failed"_s), qPrintable(replies.at(4)));
}

void ConsoleProgramsTest::commandThatIsNotUnderstoodIsTheStatus_data()
{
    QTest::addColumn<QString>("input");
    QTest::newRow("unknown") << "conect Kitchen\npower\n"_s;
    QTest::newRow("unfinished") << "cable\npower\n"_s;
    QTest::newRow("open quote") << "connect 'Kitchen\npower\n"_s;
    QTest::newRow("no line end") << "power\npower o"_s;
}

void ConsoleProgramsTest::commandThatIsNotUnderstoodIsTheStatus()
{
    QFETCH(const QString, input);
    Script script(input);
    QCOMPARE(script.waitForExit(), 2);
    QVERIFY(script.output().contains(" reply: getWifiPower "_s)); // the others are carried out
}

void ConsoleProgramsTest::restartedDaemonsLedIsSeenBlinking()
{
    const QString den = "wifi_020000000200_44656e_managed_psk"_s;
    TestDevice device;
    device.simulator.addService(den);
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.devices().waitForLed("led8"_s, LedPattern::off()));
    QVERIFY(device.daemon.stop());
    QVERIFY(device.startWithoutRadio());
    device.reportState(den, "association"_s);
    QVERIFY(device.devices().waitForLed("led8"_s, LedPattern::blink(500)));
}

void ConsoleProgramsTest::eventsComeAboveTheLineThatIsTyped()
{
    TerminalProgram terminal;
    QVERIFY(terminal.start(console));
    QVERIFY(terminal.waitFor(prompt));
    terminal.type("list\n"_s);
    QVERIFY(terminal.waitFor(prompt));
    terminal.type("pow"_s);
    QVERIFY(terminal.waitFor("2 networks\n"_s));
    QVERIFY(terminal.waitFor(prompt + "pow"_s));
    terminal.type("er\n"_s);
    QVERIFY(terminal.waitFor("reply: getWifiPower "_s));
    terminal.type("exit\n"_s);
    QCOMPARE(terminal.waitForExit(), 0);
}

void ConsoleProgramsTest::namesAreCompleted()
{
    TerminalProgram terminal;
    QVERIFY(terminal.start(console));
    // The daemon begins by switching Wi-Fi off and on: then only a scan finds the networks again.
    QVERIFY(terminal.waitFor("signal: powerChanged true"_s));
    terminal.type("lis\t"_s);
    QVERIFY(terminal.waitFor("list "_s));
    terminal.type("\n"_s);
    QVERIFY(terminal.waitFor("reply: 2 networks"_s));
    QVERIFY(terminal.waitFor(prompt)); // until then it is busy with the reply
    terminal.type("show Kit\t"_s);
    QVERIFY(terminal.waitFor("show Kitchen "_s));
}

void ConsoleProgramsTest::interruptEndsItWithoutAWordOfFailure()
{
    TerminalProgram terminal;
    QVERIFY(terminal.start(console));
    QVERIFY(terminal.waitFor(prompt));
    terminal.type("cab"_s + controlC);
    QCOMPARE(terminal.waitForExit(), 130);
    QVERIFY2(terminal.shown().contains("daemon: ended with status 0"_s), qPrintable(terminal.shown()));
    for (const QString &word : {"fail"_s, "FAIL"_s, "crash"_s, "Loc:"_s, "did not"_s}) {
        QVERIFY2(!terminal.shown().contains(word), qPrintable(terminal.shown()));
    }
}

void ConsoleProgramsTest::busIsOfferedUntilTheInputIsClosed()
{
    PipedProgram offer(console, {"--bus-only"_s});
    QVERIFY(offer.waitForOutput("\n"_s));
    const QString name = "offered"_s;
    const QDBusConnection bus = QDBusConnection::connectToBus(offer.output().trimmed(), name);
    QVERIFY2(bus.isConnected(), qPrintable(offer.output()));
    QVERIFY(bus.interface()->isServiceRegistered(daemonName));
    QDBusConnection::disconnectFromBus(name);
    offer.closeInput();
    QCOMPARE(offer.waitForExit(), 0);
    QCOMPARE(offer.output().count(QLatin1Char('\n')), 1);
}

void ConsoleProgramsTest::busIsOfferedUntilTerminated()
{
    PipedProgram offer(console, {"--bus-only"_s});
    QVERIFY(offer.waitForOutput("\n"_s));
    offer.sendSignal(SIGTERM);
    QCOMPARE(offer.waitForExit(), 0);
}

void ConsoleProgramsTest::shellSeesTheBusAndThePrograms()
{
    qputenv("SHELL", "/bin/sh");
    Script shell("network-managerctl lock\nexit 7\n"_s, {"--shell"_s});
    QCOMPARE(shell.waitForExit(), 7);
    QVERIFY2(shell.output().endsWith("\noff\n"_s), qPrintable(shell.output() + shell.errors()));
}

void ConsoleProgramsTest::daemonIsWrapped()
{
    Script script("power\n"_s, {"--wrap"_s, R"(sh -c 'echo "wrapped: $1" >&2; exec "$@"' sh)"_s});
    QCOMPARE(script.waitForExit(), 0);
    QVERIFY2(script.output().contains("log: wrapped: /"_s), qPrintable(script.output()));
    QVERIFY(script.output().contains(" reply: getWifiPower "_s));
}

void ConsoleProgramsTest::versionIsTold()
{
    Script script({}, {"--version"_s});
    QCOMPARE(script.waitForExit(), 0);
    QVERIFY(script.output().startsWith("device-console "_s));
}

static const Suite<ConsoleProgramsTest> consoleProgramsTest;
#include "ConsoleProgramsTest.moc"
