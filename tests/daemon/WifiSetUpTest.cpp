#include "EventWait.h"
#include "Scene.h"
#include "Suite.h"
#include <QElapsedTimer>
#include <QTest>

using namespace scene;
using namespace test_support;

/// What the daemon does to Wi-Fi each time ConnMan comes: power state, MAC address, region, power cycle.
class WifiSetUpTest : public QObject
{
    Q_OBJECT
private slots:
    void runsItsCommandsInOrder();
    void radioThatIwTellsOfWithAFailureCounts();
    void macAddressComesFromTheSerialNumber_data();
    void macAddressComesFromTheSerialNumber();
    void waitsUntilThePowerStateIsKnown();
    void servesNoClientWhileThePowerStateIsUnknown();
    void failedMacAddressIsTriedOnceMore_data();
    void failedMacAddressIsTriedOnceMore();
    void macAddressThatFailsTwiceIsGivenUp();
    void boardWithoutRegionIsPowerCycledOnceToo();
    void wifiThatConnmanLeftOffIsSwitchedOn();
    void wifiThatIsMeantToBeOffStaysOffAndIsNotPowerCycled_data();
    void wifiThatIsMeantToBeOffStaysOffAndIsNotPowerCycled();
    void powerCycleLeavesWifiOffForHalfASecond();
    void powerCycleThatFailsIsReportedTwice();
    void regionCommandThatHangsIsKilledAfterFiveSeconds();
    void eachReturnOfConnmanAddsOnePowerCycle();
    void settingTheRegionPowerCyclesWifi();
};

namespace {
const QString list = "iw list"_s;
const QString down = "ip link set dev wlan0 down"_s;
const QString up = "ip link set dev wlan0 up"_s;
const QString switchOn =
    "/net/connman/technology/wifi net.connman.Technology.SetProperty(\"Powered\", <true>)"_s;
const QString off = "powerChanged(false)"_s;
const QString on = "powerChanged(true)"_s;
const QString regionDone = "NetworkSettings|debug|The region has been set successfully."_s;
const QString macRetry = "NetworkManager|critical|Failed to set MAC address -> trying again!"_s;
const QString missing =
    "ConnmanTechnology|critical|Missing property \"Powered\" of service \"/net/connman/technology/wifi\""_s;
const QString downFailed = "default|critical|Failed to set interface down."_s;

/// A device with region "SE" and serial number 100.
struct Board : TestDevice
{
    Board()
    {
        daemon.sandbox().setSettings("region"_s, regionSweden);
        simulator.setSerialNumber(100);
    }
    void switchWifiOff() { simulator.setTechnologyProperty("wifi"_s, "Powered"_s, false); }
};
} // namespace

void WifiSetUpTest::runsItsCommandsInOrder()
{
    Board board;
    QVERIFY(board.start());
    QVERIFY(board.client.waitFor(on));
    QCOMPARE(board.commands().calls(), (QStringList{list, down, setAddress, up, setSweden, disable, enable}));
    QCOMPARE(board.client.record(), (QStringList{off, on}));
}

void WifiSetUpTest::radioThatIwTellsOfWithAFailureCounts()
{
    Board board;
    board.commands().script(list, {"error command failed"_s, "exit 1"_s});
    QVERIFY(board.start());
    QVERIFY(board.commands().waitForCall(setSweden));
}

void WifiSetUpTest::macAddressComesFromTheSerialNumber_data()
{
    QTest::addColumn<int>("serialNumber");
    QTest::addColumn<QString>("address");
    QTest::newRow("0") << 0 << "02:a7:c4:03:0d:40";
    QTest::newRow("100") << 100 << "02:a7:c4:03:0d:a4";
    QTest::newRow("largest of five digits") << 848575 << "02:a7:c4:0f:ff:ff";
    QTest::newRow("six digits") << 848576 << "02:a7:c4:01:00:00:0";
}

void WifiSetUpTest::macAddressComesFromTheSerialNumber()
{
    QFETCH(int, serialNumber);
    QFETCH(QString, address);
    Board board;
    board.switchWifiOff();
    board.simulator.setSerialNumber(serialNumber);
    QVERIFY(board.startAndAttach());
    QVERIFY(board.commands().calls().contains("ip link set dev wlan0 address "_s + address));
}

void WifiSetUpTest::waitsUntilThePowerStateIsKnown()
{
    Board board;
    board.simulator.removeTechnologyProperty("wifi"_s, "Powered"_s);
    QVERIFY(board.start());
    constexpr int polls = 3;
    QElapsedTimer clock;
    QVERIFY(board.log().waitFor(missing));
    clock.start();
    QVERIFY(board.log().waitFor(missing, 1 + polls));
    QVERIFY2(clock.elapsed() > polls * 250 - 100, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(board.commands().calls(), QStringList(list));

    board.simulator.setTechnologyProperty("wifi"_s, "Powered"_s, false, true);
    QVERIFY(board.commands().waitForCall(setSweden));
    QCOMPARE(board.commands().calls(), (QStringList{list, down, setAddress, up, setSweden}));
    board.log().tolerate(missing);
}

void WifiSetUpTest::servesNoClientWhileThePowerStateIsUnknown()
{
    Board board;
    board.simulator.removeTechnologyProperty("wifi"_s, "Powered"_s);
    QVERIFY(board.start());
    QVERIFY(board.log().waitFor(missing));
    board.client.send("getHostName");
    QVERIFY(board.log().waitFor(missing, board.log().lines().count(missing) + 2));
    QCOMPARE(board.client.record(), QStringList());
    board.simulator.setTechnologyProperty("wifi"_s, "Powered"_s, false, true);
    QVERIFY(board.client.waitFor("getHostName -> \"printer\""_s));
    board.log().tolerate(missing);
}

void WifiSetUpTest::failedMacAddressIsTriedOnceMore_data()
{
    QTest::addColumn<QString>("failing");
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QString>("complaint");
    const QStringList crash{"once"_s, "crash"_s};
    QTest::newRow("down") << down << crash << QStringList{down, down, setAddress, up} << downFailed;
    QTest::newRow("address") << setAddress
                             << QStringList{"once"_s, "print no such"_s, "error device"_s, "crash"_s}
                             << QStringList{down, setAddress, down, setAddress, up}
                             << "default|critical|Failed to set interface address: \"no such\\ndevice\\n\"";
    QTest::newRow("up") << up << crash << QStringList{down, setAddress, up, down, setAddress, up}
                        << "default|critical|Failed to set interface up.";
}

void WifiSetUpTest::failedMacAddressIsTriedOnceMore()
{
    QFETCH(QString, failing);
    QFETCH(QStringList, script);
    QFETCH(QStringList, calls);
    QFETCH(QString, complaint);
    Board board;
    board.switchWifiOff();
    board.commands().script(failing, script);
    QVERIFY(board.start());
    QVERIFY(board.commands().waitForCall(setSweden));
    QCOMPARE(board.commands().calls(), QStringList(list) + calls + QStringList(setSweden));
    QCOMPARE(board.log().lines(), (QStringList{complaint, macRetry}));
    QVERIFY(board.log().takeProblem(complaint));
    QVERIFY(board.log().takeProblem(macRetry));
}

void WifiSetUpTest::macAddressThatFailsTwiceIsGivenUp()
{
    Board board;
    board.switchWifiOff();
    board.commands().removeProgram("ip"_s);
    QVERIFY(board.start());
    QVERIFY(board.commands().waitForCall(setSweden));
    QCOMPARE(board.commands().calls(), (QStringList{list, setSweden}));
    QCOMPARE(board.log().lines(), (QStringList{downFailed, macRetry, downFailed}));
    board.log().tolerate(downFailed);
    QVERIFY(board.log().takeProblem(macRetry));
}

void WifiSetUpTest::boardWithoutRegionIsPowerCycledOnceToo()
{
    Board board;
    board.daemon.sandbox().setSettings("region"_s, "");
    QVERIFY(board.start());
    QVERIFY(board.client.waitFor(on));
    board.client.settle();
    // The default region is set, then applied; only the second is what the power cycle waits for.
    const QString setDefault = "iw reg set US"_s;
    QCOMPARE(board.commands().calls(),
             (QStringList{list, down, setAddress, up, setDefault, setDefault, disable, enable}));
    QCOMPARE(board.client.record(), (QStringList{off, on}));
}

void WifiSetUpTest::wifiThatConnmanLeftOffIsSwitchedOn()
{
    Board board;
    board.switchWifiOff();
    board.daemon.sandbox().setConnmanFile("settings"_s,
                                          "[global]\nOfflineMode=false\n\n[WiFi]\nEnable=true\n");
    QVERIFY(board.start());
    QVERIFY(board.client.waitFor(on));
    QVERIFY(board.simulator.calls().contains(switchOn));
    QCOMPARE(board.commands().calls(), (QStringList{list, down, setAddress, up, setSweden}));
}

void WifiSetUpTest::wifiThatIsMeantToBeOffStaysOffAndIsNotPowerCycled_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::newRow("switched off") << QByteArray("[global]\nOfflineMode=false\n\n[WiFi]\nEnable=false\n");
    QTest::newRow("offline") << QByteArray("[global]\nOfflineMode=true\n\n[WiFi]\nEnable=true\n");
    QTest::newRow("nothing is known") << QByteArray();
}

void WifiSetUpTest::wifiThatIsMeantToBeOffStaysOffAndIsNotPowerCycled()
{
    QFETCH(QByteArray, settings);
    constexpr int secondLookMs = 5000;
    Board board;
    board.switchWifiOff();
    board.daemon.sandbox().setConnmanFile("settings"_s, settings);
    board.daemon.setLoggingRules("NetworkSettings=true"_s);
    QVERIFY(board.start());
    QVERIFY(board.log().waitFor(regionDone));
    QVERIFY(!board.simulator.waitForCall(switchOn, secondLookMs * 3 / 2));
    QCOMPARE(board.commands().calls(), (QStringList{list, down, setAddress, up, setSweden}));
    QCOMPARE(board.client.record(), QStringList());
}

void WifiSetUpTest::powerCycleLeavesWifiOffForHalfASecond()
{
    Board board;
    QVERIFY(board.start());
    QVERIFY(board.client.waitFor(off));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(board.commands().waitForCall(enable));
    // What this test hears of the start of the pause may come late.
    QVERIFY2(clock.elapsed() > 400, qPrintable(QString::number(clock.elapsed())));
}

void WifiSetUpTest::powerCycleThatFailsIsReportedTwice()
{
    Board board;
    board.commands().removeProgram("connmanctl"_s);
    QVERIFY(board.start());
    const QString failed = "NetworkManager|critical|Wifi reset failed!"_s;
    QVERIFY(board.log().takeProblem(failed));
    QVERIFY(board.log().takeProblem(failed));
    QVERIFY(waitUntil([&] { return spoken(board.simulator) == QStringList{sentence(4), sentence(4)}; }));
    QCOMPARE(board.client.record(), QStringList());
}

void WifiSetUpTest::regionCommandThatHangsIsKilledAfterFiveSeconds()
{
    Board board;
    board.commands().script(setSweden, {"hang"_s});
    QVERIFY(board.start());
    QVERIFY(board.commands().waitForCall(setSweden));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(board.commands().waitForCall(disable));
    QVERIFY2(clock.elapsed() > 4500, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(board.client.waitFor(on));
    QCOMPARE(board.commands().calls().mid(4), (QStringList{setSweden, disable, enable}));
}

void WifiSetUpTest::eachReturnOfConnmanAddsOnePowerCycle()
{
    Board board;
    QVERIFY(board.start());
    QVERIFY(board.client.waitFor(on));
    board.commands().clearCalls();
    board.simulator.restartConnman();
    QVERIFY(board.client.waitFor(on, 3));
    board.client.settle();
    QCOMPARE(board.commands().calls(),
             (QStringList{list, down, setAddress, up, setSweden, disable, enable, disable, enable}));
}

void WifiSetUpTest::settingTheRegionPowerCyclesWifi()
{
    Board board;
    QVERIFY(board.start());
    QVERIFY(board.client.waitFor(on));
    board.commands().clearCalls();
    board.client.clearRecord();
    QCOMPARE(board.client.call("setWifiRegion", "DE"_s).toBool(), true);
    // The end of the command is dealt with inside the operation, before its own signal and its reply.
    QCOMPARE(board.client.record(),
             (QStringList{off, on, "regionChanged(\"DE\", false)"_s, "setWifiRegion -> true"_s}));
    QCOMPARE(board.commands().calls(), (QStringList{"iw reg set DE"_s, disable, enable}));
}

static const Suite<WifiSetUpTest> wifiSetUpTest;
#include "WifiSetUpTest.moc"
