#include "EventWait.h"
#include "Introspection.h"
#include "Scene.h"
#include "Suite.h"
#include <QDBusReply>
#include <QTest>

using namespace test_support;

/// How the daemon attaches itself to ConnMan, on a board without Wi-Fi hardware (the rest is
/// WifiSetUpTest's).
class HookUpTest : public QObject
{
    Q_OBJECT
private slots:
    void attachesToAConnmanThatIsThereAlready();
    void attachesWhenConnmanAppears();
    void nothingIsAskedOfConnmanBeforeItAppears();
    void agentIsOnTheBusOnceConnmanHasBeenSeen();
    void returnOfConnmanRegistersTheAgentAgainAndCreatesNothing();
    void objectsOutliveConnman();
    void refusedAgentIsReportedAndAttachingGoesOn();
    void boardWithoutRadioIsLeftAlone();
    void programThatCannotTellOfRadiosMeansNone_data();
    void programThatCannotTellOfRadiosMeansNone();
    void ledsAreOffAfterStart();
    void missingLedsAreReported_data();
    void missingLedsAreReported();
    void unpluggedKeyboardIsToldByLibraryAndDaemon();
};

namespace {
const QString registerAgent = "/ net.connman.Manager.RegisterAgent(objectpath \"/agent\")"_s;
const QString getServices = "/ net.connman.Manager.GetServices()"_s;
const QString readTechnology = "/net/connman/technology/wifi net.connman.Technology.GetProperties()"_s;
const QString noRadio = "default|critical|WLAN not supported on this board."_s;

bool agentIsThere(const DaemonClient &client)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(
        "com.tactora.NetworkManager"_s, "/agent"_s, "org.freedesktop.DBus.Introspectable"_s, "Introspect"_s);
    const QString xml = QDBusReply<QString>(client.connection().call(call));
    return !introspectedMembers(xml, "net.connman.Agent"_s).isEmpty();
}
} // namespace

void HookUpTest::attachesToAConnmanThatIsThereAlready()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    QCOMPARE(device.simulator.calls(), (QStringList{registerAgent, readTechnology, getServices}));
    QCOMPARE(device.commands().calls(), QStringList("iw list"_s));
}

void HookUpTest::attachesWhenConnmanAppears()
{
    TestDevice device;
    device.removeRadio();
    device.simulator.setPresent(scene::connman, false);
    QVERIFY(device.start());
    device.simulator.setPresent(scene::connman, true);
    QVERIFY(device.simulator.waitForCall(getServices));
    QCOMPARE(device.simulator.calls(), (QStringList{registerAgent, readTechnology, getServices}));
    QVERIFY(device.log().takeProblem(noRadio));
}

void HookUpTest::nothingIsAskedOfConnmanBeforeItAppears()
{
    TestDevice device;
    device.simulator.setPresent(scene::connman, false);
    QVERIFY(device.start());
    QCOMPARE(device.client.call("getWifiPower").toBool(), false);
    QVERIFY(!agentIsThere(device.client));
    QCOMPARE(device.simulator.calls(), QStringList());
    QCOMPARE(device.commands().calls(), QStringList());
}

void HookUpTest::agentIsOnTheBusOnceConnmanHasBeenSeen()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    QVERIFY(agentIsThere(device.client));
    QCOMPARE(device.simulator.agents().size(), 1);
    QCOMPARE(device.simulator.agents().constFirst().path(), "/agent"_s);
}

void HookUpTest::returnOfConnmanRegistersTheAgentAgainAndCreatesNothing()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    device.simulator.clearCalls();
    device.simulator.restartConnman();
    QVERIFY(device.simulator.waitForCall(registerAgent));
    QVERIFY(device.log().takeProblem(noRadio));
    device.client.settle();
    // A second manager would load the services, a second technology its properties.
    QCOMPARE(device.simulator.calls(), QStringList(registerAgent));
    QCOMPARE(device.simulator.agents().size(), 1);
}

void HookUpTest::objectsOutliveConnman()
{
    TestDevice device;
    device.simulator.addService(scene::home);
    QVERIFY(device.startWithoutRadio());
    device.reportState(scene::home, "ready"_s);
    device.simulator.setPresent(scene::connman, false);
    QVERIFY(agentIsThere(device.client));
    QCOMPARE(device.client.call("activeNetworks").toStringList(), QStringList());
    QVERIFY(device.log().problems().isEmpty());
}

void HookUpTest::refusedAgentIsReportedAndAttachingGoesOn()
{
    TestDevice device;
    const Fault refusal = device.simulator.injectFault(
        "net.connman.Manager"_s, "RegisterAgent"_s,
        FaultKind::error("net.connman.Error.AlreadyExists"_s, "Already exists"_s));
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.log().takeProblem(
        "ConnmanManager|critical|Unable to call RegisterAgent(\"/agent\") on \"net.connman\": Already exists"_s));
    QVERIFY(
        device.log().takeProblem("NetworkManager|critical|Unable to register ConnmanAgent,registering new "
                                 "networks will not be possible."_s));
    QCOMPARE(device.simulator.calls(), (QStringList{registerAgent, readTechnology, getServices}));
}

void HookUpTest::boardWithoutRadioIsLeftAlone()
{
    TestDevice device;
    device.daemon.sandbox().setSettings("region"_s, scene::regionSweden);
    QVERIFY(device.startWithoutRadio());
    // No MAC address, no region, no power cycle; Wi-Fi is powered, or there would be none in any case.
    QCOMPARE(device.client.call("getWifiPower").toBool(), true);
    QCOMPARE(device.commands().calls(), QStringList("iw list"_s));
    QCOMPARE(device.simulator.callsStartingWith("/ com.tactora.ConfigurationManager"_s), QStringList());
    QCOMPARE(device.client.record(), QStringList("getWifiPower -> true"_s));
}

void HookUpTest::programThatCannotTellOfRadiosMeansNone_data()
{
    QTest::addColumn<QStringList>("script");
    QTest::newRow("prints nothing") << QStringList();
    QTest::newRow("prints nothing, fails") << QStringList("exit 1"_s);
    QTest::newRow("prints and crashes") << QStringList{"print Wiphy phy0"_s, "crash"_s};
}

void HookUpTest::programThatCannotTellOfRadiosMeansNone()
{
    QFETCH(QStringList, script);
    TestDevice device;
    device.commands().script("iw list"_s, script);
    QVERIFY(device.startAndAttach());
    QVERIFY(device.log().takeProblem(noRadio));
    QCOMPARE(device.commands().calls(), QStringList("iw list"_s));
}

void HookUpTest::ledsAreOffAfterStart()
{
    LonelyDaemon device;
    QVERIFY(device.start());
    FakeDevices &devices = device.daemon.sandbox().devices();
    QCOMPARE(devices.led("led8"_s), LedPattern::off());
    QCOMPARE(devices.led("led10"_s), LedPattern::off());
}

void HookUpTest::missingLedsAreReported_data()
{
    QTest::addColumn<QStringList>("missing");
    QTest::addColumn<QStringList>("lines");
    const QString ethernet = "NetworkManager|critical|Eth-led is invalid."_s;
    const QString wifi = "NetworkManager|critical|Wlan-led is invalid."_s;
    QTest::newRow("Ethernet") << QStringList("led10"_s) << QStringList(ethernet);
    QTest::newRow("Wi-Fi") << QStringList("led8"_s) << QStringList(wifi);
    QTest::newRow("both") << QStringList{"led8"_s, "led10"_s} << QStringList{ethernet, wifi};
}

void HookUpTest::missingLedsAreReported()
{
    QFETCH(QStringList, missing);
    QFETCH(QStringList, lines);
    LonelyDaemon device;
    for (const QString &led : missing) {
        device.daemon.sandbox().devices().removeLed(led);
    }
    QVERIFY(device.start());
    QCOMPARE(device.client.call("getHostName").toString(), "printer"_s);
    QCOMPARE(device.daemon.log().lines(), lines);
    for (const QString &line : lines) {
        QVERIFY(device.daemon.log().takeProblem(line));
    }
}

void HookUpTest::unpluggedKeyboardIsToldByLibraryAndDaemon()
{
    const QString message = "\"/dev/input/event0: No such device\""_s;
    LonelyDaemon device;
    device.daemon.setLoggingRules("NetworkManager.warning=true"_s);
    QVERIFY(device.start());
    device.daemon.sandbox().keyboard().hangUp();
    QVERIFY(device.daemon.log().waitFor("NetworkManager|warning|Keyboard-error: "_s + message));
    QVERIFY(device.daemon.log().takeProblem("libkeyboard|critical|Keyboard error: "_s + message));
    QCOMPARE(device.client.call("getHostName").toString(), "printer"_s);
}

static const Suite<HookUpTest> hookUpTest;
#include "HookUpTest.moc"
