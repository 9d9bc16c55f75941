#include "EventWait.h"
#include "Keys.h"
#include "Scene.h"
#include "Suite.h"
#include <QTest>
#include <QTimer>

using namespace scene;
using namespace test_support;

/// Switching Wi-Fi: by the key chord through connmanctl, and by the D-Bus operation through ConnMan.
class WifiPowerTest : public QObject
{
    Q_OBJECT
private slots:
    void chordSwitchesWifiAndSaysSo_data();
    void chordSwitchesWifiAndSaysSo();
    void chordIsSpokenBeforeWifiIsSwitched();
    void keysWithoutTheirChordDoNothing_data();
    void keysWithoutTheirChordDoNothing();
    void howConnmanctlEndsDoesNotMatter_data();
    void howConnmanctlEndsDoesNotMatter();
    void connmanctlMayTakeFiveSecondsButNotSix();
    void missingConnmanctlIsReported();
    void enablingScansAndJoinsThePreferredNetworkFiveSecondsLater();
    void neitherWayOfSwitchingOffScans();
    void powerOperationSetsThePropertyAndTells_data();
    void powerOperationSetsThePropertyAndTells();
    void refusedPowerOperationTellsNothing();
    void switchingOnScansTwoSecondsLater();
};

namespace {
const QString resetFailed = "NetworkManager|critical|Wifi reset failed!"_s;

void chord(TestDevice &device, int key)
{
    keys::pressChord(device.daemon.sandbox().keyboard(), key);
}
} // namespace

void WifiPowerTest::chordSwitchesWifiAndSaysSo_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("sentence");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("signal");
    QTest::newRow("off") << keys::wifiOff << 2 << disable << "powerChanged(false)";
    QTest::newRow("on") << keys::wifiOn << 3 << enable << "powerChanged(true)";
}

void WifiPowerTest::chordSwitchesWifiAndSaysSo()
{
    QFETCH(int, key);
    QFETCH(int, sentence);
    QFETCH(QString, command);
    QFETCH(QString, signal);
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    device.commands().clearCalls();
    chord(device, key);
    QVERIFY(device.client.waitFor(signal));
    QCOMPARE(device.client.record(), QStringList(signal));
    QCOMPARE(device.commands().calls(), QStringList(command));
    QCOMPARE(spoken(device.simulator), QStringList(scene::sentence(sentence)));
}

void WifiPowerTest::chordIsSpokenBeforeWifiIsSwitched()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    device.commands().script("connmanctl"_s, {"hold"_s});
    chord(device, keys::wifiOff);
    QVERIFY(device.commands().waitForCall(disable));
    QVERIFY(waitUntil([&] { return spoken(device.simulator) == QStringList(sentence(2)); }));
    QCOMPARE(device.client.record(), QStringList());
    device.commands().release();
    QVERIFY(device.client.waitFor("powerChanged(false)"_s));
}

void WifiPowerTest::keysWithoutTheirChordDoNothing_data()
{
    using Events = QVector<int>;
    QTest::addColumn<Events>("events"); // a key going down, or up when negative
    QTest::newRow("on, no modifier") << Events{keys::wifiOn, -keys::wifiOn};
    QTest::newRow("off, no modifier") << Events{keys::wifiOff, -keys::wifiOff};
    QTest::newRow("modifier alone") << Events{keys::modifier, -keys::modifier};
    QTest::newRow("modifier released before the key")
        << Events{keys::modifier, keys::wifiOn, -keys::modifier, -keys::wifiOn};
    QTest::newRow("key held down only") << Events{keys::modifier, keys::wifiOff};
    QTest::newRow("another key") << Events{keys::modifier, 36, -36, 39, -39, -keys::modifier};
}

void WifiPowerTest::keysWithoutTheirChordDoNothing()
{
    QFETCH(QVector<int>, events);
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    device.commands().clearCalls();
    FakeKeyboard &keyboard = device.daemon.sandbox().keyboard();
    for (const int event : events) {
        event > 0 ? keyboard.press(event) : keyboard.release(-event);
    }
    // A chord that counts shows that the keys before it have been read.
    keyboard.release(keys::modifier);
    chord(device, keys::wifiOff);
    QVERIFY(device.client.waitFor("powerChanged(false)"_s));
    QCOMPARE(device.client.record(), QStringList("powerChanged(false)"_s));
    QCOMPARE(device.commands().calls(), QStringList(disable));
    QCOMPARE(spoken(device.simulator), QStringList(sentence(2)));
}

void WifiPowerTest::howConnmanctlEndsDoesNotMatter_data()
{
    QTest::addColumn<QStringList>("script");
    QTest::newRow("status 1") << QStringList{"print Error wifi: Already disabled"_s, "exit 1"_s};
    QTest::newRow("crash") << QStringList("crash"_s);
}

void WifiPowerTest::howConnmanctlEndsDoesNotMatter()
{
    QFETCH(QStringList, script);
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    device.commands().script("connmanctl"_s, script);
    chord(device, keys::wifiOff);
    QVERIFY(device.client.waitFor("powerChanged(false)"_s));
    QCOMPARE(spoken(device.simulator), QStringList(sentence(2)));
}

void WifiPowerTest::connmanctlMayTakeFiveSecondsButNotSix()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    device.commands().script("connmanctl"_s, {"hold"_s});
    chord(device, keys::wifiOn);
    QVERIFY(device.commands().waitForCall(enable));
    QElapsedTimer clock;
    clock.start();
    QTimer::singleShot(6000, Qt::PreciseTimer, &device.client, [&] { device.commands().release(); });
    QVERIFY(device.log().takeProblem(resetFailed));
    QVERIFY2(clock.elapsed() > 4500, qPrintable(QString::number(clock.elapsed())));
    device.client.settle();
    QCOMPARE(device.client.record(), QStringList());
    QCOMPARE(spoken(device.simulator), (QStringList{sentence(3), sentence(4)}));
}

void WifiPowerTest::missingConnmanctlIsReported()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    device.commands().removeProgram("connmanctl"_s);
    chord(device, keys::wifiOff);
    QVERIFY(device.log().takeProblem(resetFailed));
    device.client.settle();
    QCOMPARE(device.client.record(), QStringList());
    QCOMPARE(spoken(device.simulator), (QStringList{sentence(2), sentence(4)}));
}

void WifiPowerTest::enablingScansAndJoinsThePreferredNetworkFiveSecondsLater()
{
    TestDevice device;
    device.daemon.sandbox().setSettings("main"_s, homePreferred);
    const QString openHome = device.simulator.addNetwork({{"ssid"_s, "Home"_s}, {"security"_s, "none"_s}});
    QVERIFY(device.startWithoutRadio());
    device.simulator.clearCalls();
    chord(device, keys::wifiOn);
    QVERIFY(device.client.waitFor("powerChanged(true)"_s));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(device.simulator.waitForCall(scan));
    // A coarse timer may be five percent early.
    QVERIFY(isBetween(clock, 4600, 9000));
    clock.restart();
    QVERIFY(device.simulator.waitForCall(connectCall(openHome)));
    QVERIFY2(clock.elapsed() > 400, qPrintable(QString::number(clock.elapsed())));
    // Powered on by the chord, so the return to the network is announced.
    QVERIFY(device.client.waitFor(announcement));
    QCOMPARE(spoken(device.simulator), (QStringList{sentence(3), sentence(7)}));
}

void WifiPowerTest::neitherWayOfSwitchingOffScans()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    device.simulator.clearCalls();
    chord(device, keys::wifiOff);
    QVERIFY(device.client.waitFor("powerChanged(false)"_s));
    QVERIFY(device.client.call("setWifiPower", false).toBool());
    constexpr int longerThanEitherDelay = 6000;
    QVERIFY(!device.simulator.waitForCall(scan, longerThanEitherDelay));
}

void WifiPowerTest::powerOperationSetsThePropertyAndTells_data()
{
    QTest::addColumn<bool>("on");
    QTest::addColumn<QString>("call");
    QTest::addColumn<QStringList>("record");
    const QString call =
        "/net/connman/technology/wifi net.connman.Technology.SetProperty(\"Powered\", <%1>)"_s;
    QTest::newRow("on") << true << call.arg("true"_s)
                        << QStringList{"powerChanged(true)"_s, "setWifiPower -> true"_s,
                                       "getWifiPower -> true"_s};
    QTest::newRow("off") << false << call.arg("false"_s)
                         << QStringList{"powerChanged(false)"_s, "setWifiPower -> true"_s,
                                        "getWifiPower -> false"_s};
}

void WifiPowerTest::powerOperationSetsThePropertyAndTells()
{
    QFETCH(bool, on);
    QFETCH(QString, call);
    QFETCH(QStringList, record);
    TestDevice device;
    device.simulator.setTechnologyProperty("wifi"_s, "Powered"_s, !on);
    QVERIFY(device.startWithoutRadio());
    device.simulator.clearCalls();
    QCOMPARE(device.client.call("setWifiPower", on).toBool(), true);
    QCOMPARE(device.simulator.calls(), QStringList(call));
    QCOMPARE(device.client.call("getWifiPower").toBool(), on);
    QCOMPARE(device.client.record(), record);
}

void WifiPowerTest::refusedPowerOperationTellsNothing()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    const Fault refusal =
        device.simulator.injectFault("net.connman.Technology"_s, "SetProperty"_s,
                                     FaultKind::error("net.connman.Error.Failed"_s, "Input/output error"_s));
    QCOMPARE(device.client.call("setWifiPower", true).toBool(), false);
    QVERIFY(device.log().takeProblem(
        "ConnmanTechnology|critical|Setting property \"Powered\" failed: \"Input/output error\""_s));
    QCOMPARE(device.client.record(), QStringList("setWifiPower -> false"_s));
    // Nor is the scan of two seconds later armed.
    constexpr int longerThanTheDelay = 2700;
    QVERIFY(!device.simulator.waitForCall(scan, longerThanTheDelay));
}

void WifiPowerTest::switchingOnScansTwoSecondsLater()
{
    TestDevice device;
    device.simulator.setTechnologyProperty("wifi"_s, "Powered"_s, false);
    QVERIFY(device.startWithoutRadio());
    QCOMPARE(device.client.call("setWifiPower", true).toBool(), true);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(device.simulator.waitForCall(scan));
    QVERIFY(isBetween(clock, 1800, 3800));
}

static const Suite<WifiPowerTest> wifiPowerTest;
#include "WifiPowerTest.moc"
