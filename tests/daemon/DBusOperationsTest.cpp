#include "Scene.h"
#include "Suite.h"
#include <QRegularExpression>
#include <QTest>

using namespace test_support;

/// What belongs to the D-Bus interface itself: overloads, relayed signals, region, lock and host name.
class DBusOperationsTest : public QObject
{
    Q_OBJECT
private slots:
    void shortConfigureIsTheLongOneWithoutAddresses_data();
    void shortConfigureIsTheLongOneWithoutAddresses();
    void shortWpsRegistrationIsTheLongOneWithoutSecret();
    void wrongSignatureIsRefusedByTheBusAlone();
    void everySignalReachesTheBus();
    void failureIsAnOrdinaryReplyAndASignalBeforeIt();
    void callsAreServedOneAtATime();
    void regionIsSetAndTold();
    void lockedRegionIsNeitherSetNorTold();
    void regionThatIwCannotSetIsNotTold_data();
    void regionThatIwCannotSetIsNotTold();
    void lockIsSetAndToldWithTheRegion_data();
    void lockIsSetAndToldWithTheRegion();
    void hostNameIsWrittenAndReadWithoutSignal();
    void unusableHostNameFileIsAnEmptyName();
};

namespace {
/// What one call did, seen from all sides.
struct Effect
{
    QStringList record;
    QStringList connmanCalls;
    QStringList problems;
};

template <typename... Arguments>
Effect effectOf(const char *method, const Arguments &...arguments)
{
    TestDevice device;
    device.simulator.addNetwork({{"ssid"_s, "Home"_s}, {"security"_s, "wps"_s}, {"pin"_s, "12345670"_s}});
    // Without a PIN ConnMan waits for somebody to press the access point's button: nobody will.
    device.simulator.setTiming("connect"_s, 200);
    if (!device.startWithoutRadio()) {
        return {};
    }
    device.simulator.clearCalls();
    device.client.call(method, arguments...);
    // How often the properties are read meanwhile depends on how the state changes fall.
    const QStringList writes =
        device.simulator.calls().filter(QRegularExpression("SetProperty|Connect\\(\\)"_s));
    Effect effect{device.client.record(), writes, device.log().problems()};
    for (const QString &problem : qAsConst(effect.problems)) {
        device.log().takeProblem(problem);
    }
    return effect;
}

} // namespace

void DBusOperationsTest::shortConfigureIsTheLongOneWithoutAddresses_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<int>("connmanCalls");
    QTest::newRow("dhcp") << "dhcp" << 2;
    QTest::newRow("off") << "off" << 1;
    QTest::newRow("manual") << "manual" << 0;
    QTest::newRow("no method") << "" << 0;
    QTest::newRow("capitals") << "DHCP" << 0;
}

void DBusOperationsTest::shortConfigureIsTheLongOneWithoutAddresses()
{
    QFETCH(QString, method);
    QFETCH(int, connmanCalls);
    const Effect shortForm = effectOf("configure", scene::home, method);
    const Effect longForm = effectOf("configure", scene::home, method, QString(), QString(), QString());
    QCOMPARE(shortForm.record, longForm.record);
    QCOMPARE(shortForm.connmanCalls, longForm.connmanCalls);
    QCOMPARE(shortForm.problems, longForm.problems);
    QCOMPARE(shortForm.connmanCalls.size(), connmanCalls);
    QCOMPARE(shortForm.record.constLast(), connmanCalls > 0 ? "configure -> true"_s : "configure -> false"_s);
}

void DBusOperationsTest::shortWpsRegistrationIsTheLongOneWithoutSecret()
{
    const Effect shortForm = effectOf("registerWifiWps", scene::home);
    const Effect longForm = effectOf("registerWifiWps", scene::home, QString());
    QCOMPARE(shortForm.record, longForm.record);
    QCOMPARE(shortForm.connmanCalls, longForm.connmanCalls);
    QCOMPARE(shortForm.problems, longForm.problems);
    QVERIFY(shortForm.connmanCalls.contains(scene::servicePath(scene::home) +
                                            " net.connman.Service.Connect()"_s));
}

void DBusOperationsTest::wrongSignatureIsRefusedByTheBusAlone()
{
    LonelyDaemon device;
    QVERIFY(device.start());
    const QDBusMessage reply = device.client.callForReply("configure"_s, {"x"_s, "manual"_s, "10.0.0.1"_s});
    QCOMPARE(reply.errorName(), "org.freedesktop.DBus.Error.UnknownMethod"_s);
}

void DBusOperationsTest::everySignalReachesTheBus()
{
    TestDevice device;
    const QString home = device.simulator.addNetwork({{"ssid"_s, "Home"_s}, {"passphrase"_s, "secret12"_s}});
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.client.call("setWifiRegion", "SE"_s).toBool());
    QVERIFY(device.client.call("registerWifi", home, "secret12"_s).toBool());
    QVERIFY(device.client.call("disconnect", home).toBool());
    QVERIFY(device.client.call("connect", home).toBool());
    QVERIFY(device.client.call("forgetWifi", home).toBool());
    QVERIFY(!device.client.call("connect", QString()).toBool());
    QVERIFY(device.client.call("setWifiPower", false).toBool());
    QCOMPARE(device.client.record(),
             (QStringList{"regionChanged(\"SE\", false)"_s, "setWifiRegion -> true"_s,
                          "networkRegistered(\"%1\")"_s.arg(home), "registerWifi -> true"_s,
                          "networkDisconnected(\"%1\")"_s.arg(home), "disconnect -> true"_s,
                          "networkConnected(\"%1\")"_s.arg(home), "connect -> true"_s,
                          "networkForgot(\"%1\")"_s.arg(home), "forgetWifi -> true"_s,
                          "error(\"Can't connect with an empty network-name.\")"_s, "connect -> false"_s,
                          "powerChanged(false)"_s, "setWifiPower -> true"_s}));
    QVERIFY(device.log().takeProblem("NetworkManager|critical|Can't connect with an empty network-name."_s));
    // ConnMan connects only what it remembers by itself, and says so until it does.
    QVERIFY(device.log().takeProblem(scene::autoConnectRefused));
}

void DBusOperationsTest::failureIsAnOrdinaryReplyAndASignalBeforeIt()
{
    TestDevice device;
    device.simulator.addService(scene::home);
    QVERIFY(device.startWithoutRadio());
    const Fault failing = device.simulator.injectFault(
        "net.connman.Service"_s, "SetProperty"_s, FaultKind::error("net.connman.Error.Failed"_s, "No"_s));
    const QDBusMessage reply = device.client.callForReply("configureIPv6"_s, {scene::home, "off"_s});
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(device.client.record(),
             (QStringList{"error(\"Unable to configure network '%1' with method 'off'.\")"_s.arg(scene::home),
                          "configureIPv6 -> false"_s}));
    QVERIFY(device.log().takeProblem(
        "ConnmanService.properties|critical|Setting property \"IPv6.Configuration\" failed: \"No\""_s));
}

void DBusOperationsTest::callsAreServedOneAtATime()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    const Fault slow =
        device.simulator.injectFault("net.connman.Technology"_s, "Scan"_s, FaultKind::delay(300));
    device.client.send("wpsNetworks");
    device.client.send("getHostName");
    QVERIFY(device.client.waitFor("getHostName -> \"printer\""_s));
    QCOMPARE(device.client.record(), (QStringList{"wpsNetworks -> []"_s, "getHostName -> \"printer\""_s}));
}

void DBusOperationsTest::regionIsSetAndTold()
{
    LonelyDaemon device;
    QVERIFY(device.start());
    QCOMPARE(device.client.call("setWifiRegion", "SE"_s).toBool(), true);
    QCOMPARE(device.client.call("getWifiRegion").toString(), "SE"_s);
    QCOMPARE(device.client.record(), (QStringList{"regionChanged(\"SE\", false)"_s, "setWifiRegion -> true"_s,
                                                  "getWifiRegion -> \"SE\""_s}));
    QCOMPARE(device.daemon.sandbox().commands().calls(), QStringList(scene::setSweden));
    QCOMPARE(device.daemon.sandbox().settings("region"_s), QByteArray("[wifi]\nregion=SE\n"));
}

void DBusOperationsTest::lockedRegionIsNeitherSetNorTold()
{
    LonelyDaemon device;
    device.daemon.sandbox().setSettings("region"_s, "[wifi]\nregion=SE\nregionLocked=true\n");
    QVERIFY(device.start());
    QCOMPARE(device.client.call("setWifiRegion", "DE"_s).toBool(), false);
    QVERIFY(device.daemon.log().takeProblem(
        "NetworkSettings|critical|Lock active. Unable to set region to \"DE\""_s));
    QCOMPARE(device.client.call("getWifiRegion").toString(), "SE"_s);
    QCOMPARE(device.client.record(), (QStringList{"setWifiRegion -> false"_s, "getWifiRegion -> \"SE\""_s}));
    QCOMPARE(device.daemon.sandbox().commands().calls(), QStringList());
}

void DBusOperationsTest::regionThatIwCannotSetIsNotTold_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::newRow("crash") << true;
    QTest::newRow("missing") << false;
}

void DBusOperationsTest::regionThatIwCannotSetIsNotTold()
{
    QFETCH(bool, isThere);
    LonelyDaemon device;
    FakeCommands &commands = device.daemon.sandbox().commands();
    isThere ? commands.script("iw reg set"_s, {"crash"_s}) : commands.removeProgram("iw"_s);
    QVERIFY(device.start());
    QCOMPARE(device.client.call("setWifiRegion", "SE"_s).toBool(), false);
    QCOMPARE(device.client.record(), QStringList("setWifiRegion -> false"_s));
    QVERIFY(device.daemon.log().takeProblem("default|critical|Failed to set region."_s));
    QCOMPARE(device.daemon.sandbox().settings("region"_s), QByteArray());
}

void DBusOperationsTest::lockIsSetAndToldWithTheRegion_data()
{
    QTest::addColumn<bool>("locked");
    QTest::newRow("on") << true;
    QTest::newRow("off") << false;
}

void DBusOperationsTest::lockIsSetAndToldWithTheRegion()
{
    QFETCH(bool, locked);
    const QString word = locked ? "true"_s : "false"_s;
    LonelyDaemon device;
    device.daemon.sandbox().setSettings("region"_s, scene::regionSweden);
    QVERIFY(device.start());
    QCOMPARE(device.client.call("setLockRegion", locked).toBool(), true);
    QCOMPARE(device.client.call("getLockRegion").toBool(), locked);
    QCOMPARE(device.client.record(),
             (QStringList{"regionChanged(\"SE\", %1)"_s.arg(word), "setLockRegion -> true"_s,
                          "getLockRegion -> %1"_s.arg(word)}));
    QCOMPARE(device.daemon.sandbox().settings("region"_s),
             "[wifi]\nregion=SE\nregionLocked=" + word.toUtf8() + "\n");
}

void DBusOperationsTest::hostNameIsWrittenAndReadWithoutSignal()
{
    LonelyDaemon device;
    QVERIFY(device.start());
    QCOMPARE(device.client.call("setHostName", "box-1"_s).toBool(), true);
    QCOMPARE(device.daemon.sandbox().hostName(), QByteArray("box-1"));
    device.daemon.sandbox().setHostName("  box   2 \n");
    QCOMPARE(device.client.call("getHostName").toString(), "box 2"_s);
    QCOMPARE(device.client.record(), (QStringList{"setHostName -> true"_s, "getHostName -> \"box 2\""_s}));
}

void DBusOperationsTest::unusableHostNameFileIsAnEmptyName()
{
    LonelyDaemon device;
    device.daemon.sandbox().makeHostNameUnusable();
    QVERIFY(device.start());
    QCOMPARE(device.client.call("getHostName").toString(), QString());
    QVERIFY(device.daemon.log().takeProblem(
        "NetworkSettings|critical|Failed to open hostname file for reading!"_s));
    QCOMPARE(device.client.call("setHostName", "box"_s).toBool(), false);
    QVERIFY(device.daemon.log().takeProblem(
        "NetworkSettings|critical|Failed to open hostname file for writing!"_s));
    QCOMPARE(device.client.record(), (QStringList{"getHostName -> \"\""_s, "setHostName -> false"_s}));
}

static const Suite<DBusOperationsTest> dBusOperationsTest;
#include "DBusOperationsTest.moc"
