#include "EventWait.h"
#include "OperationsScene.h"
#include "Suite.h"
#include <QElapsedTimer>
#include <QTest>

using namespace test_support;

/// Joining the preferred network two seconds after Wi-Fi is switched on, and telling of the return to it.
class PreferredNetworkTest : public QObject
{
    Q_OBJECT
private slots:
    void withoutPreferredNetworkNoServiceIsTouched();
    void preferredNetworkIsJoinedAndAnnouncedOnceThoughTheLinkReportsLater();
    void attemptComesAQuarterOfASecondAfterTheScan();
    void nothingIsAnnouncedWhenTheReturnAlreadyWas();
    void onlyAnIdleOrUnknownLinkIsTouched_data();
    void onlyAnIdleOrUnknownLinkIsTouched();
    void idleOrUnknownLinkIsTouched_data();
    void idleOrUnknownLinkIsTouched();
    void otherNetworksAreSkippedWithALine();
    void namesAreComparedExactly();
    void secondNetworkOfThatNameIsTriedWhenTheFirstFails();
    void noOtherNetworkOfThatNameIsTriedAfterASuccess();
    void noOtherNetworkOfThatNameIsTriedAfterAnOperation();
    void noOtherNetworkOfThatNameIsTriedOnceItIsNoLongerPreferred();
    void failureLeavesEverythingAsItIsAndTheReturnIsStillAnnounced();
    void busyPreferredNetworkEndsTheAttempt();
};

namespace {
const QString trying = "NetworkManager|debug|Trying to connect to prefered network \"Home\""_s;

const QString dropped =
    "NetworkManager|debug|No other prefered network is tried, an operation came between."_s;

/// A device whose preferred network is "Home", its Wi-Fi switched off and everything logged.
struct PreferringDevice : scene::Operations
{
    PreferringDevice()
    {
        daemon.sandbox().setSettings("main"_s, scene::homePreferred);
        daemon.setLoggingRules("NetworkManager=true"_s);
        simulator.setTechnologyProperty("wifi"_s, "Powered"_s, false);
    }

    /// Switches Wi-Fi on; the attempt comes two seconds later.
    bool powerOn()
    {
        simulator.clearCalls();
        return client.call("setWifiPower", true).toBool();
    }
    /// Waits for the attempt's beginning and its end.
    bool attempt()
    {
        const bool begun = log().waitFor(trying);
        client.settle();
        return begun;
    }
    QStringList connectCalls() { return simulator.calls().filter("net.connman.Service.Connect()"_s); }
    QStringList serviceCalls()
    {
        return simulator.calls().filter("net.connman.Service.SetProperty"_s) + connectCalls();
    }
};

QVariantMap named(const QString &name)
{
    return {{"Name"_s, name}};
}

QVariantMap onInterface(const QString &interface)
{
    return {{"Name"_s, "Home"_s}, {"Ethernet"_s, QVariantMap{{"Interface"_s, interface}}}};
}
} // namespace

void PreferredNetworkTest::withoutPreferredNetworkNoServiceIsTouched()
{
    PreferringDevice device;
    device.daemon.sandbox().setSettings("main"_s, "");
    device.simulator.addService(scene::home, named("Home"_s));
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.powerOn());
    QVERIFY(device.log().waitFor("NetworkManager|debug|No prefered network is registered."_s));
    device.client.settle();
    QCOMPARE(device.log().lines().filter("NetworkManager|"_s),
             (QStringList{"NetworkManager|debug|Trying to connect to prefered network \"\""_s,
                          "NetworkManager|debug|No prefered network is registered."_s}));
    QCOMPARE(device.serviceCalls(), QStringList());
}

void PreferredNetworkTest::preferredNetworkIsJoinedAndAnnouncedOnceThoughTheLinkReportsLater()
{
    PreferringDevice device;
    const QString home = device.simulator.addNetwork({{"ssid"_s, "Home"_s}, {"security"_s, "none"_s}});
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.powerOn());
    QVERIFY(device.client.waitFor(scene::announcement));
    QVERIFY(device.devices().waitForLed("led8"_s, LedPattern::on()));
    device.client.settle();
    QCOMPARE(device.connectCalls(), QStringList(scene::connectCall(home)));
    QVERIFY(device.simulator.calls().indexOf(scene::scan) <
            device.simulator.calls().indexOf(scene::connectCall(home)));
    QCOMPARE(device.client.record(),
             (QStringList{"powerChanged(true)"_s, "setWifiPower -> true"_s, scene::announcement}));
    QVERIFY(waitUntil([&] { return scene::spoken(device.simulator) == QStringList(scene::sentence(7)); }));
}

void PreferredNetworkTest::attemptComesAQuarterOfASecondAfterTheScan()
{
    PreferringDevice device;
    device.simulator.addService(scene::home, named("Home"_s));
    QVERIFY(device.startWithoutRadio());
    const Fault success = scene::connectFault(device.simulator, FaultKind::reply({}));
    QVERIFY(device.powerOn());
    QVERIFY(device.simulator.waitForCall(scene::scan));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(device.simulator.waitForCall(scene::connectCall(scene::home)));
    // What this test hears of the scan may come late.
    QVERIFY2(clock.elapsed() > 200, qPrintable(QString::number(clock.elapsed())));
}

void PreferredNetworkTest::nothingIsAnnouncedWhenTheReturnAlreadyWas()
{
    PreferringDevice device;
    device.simulator.addService(scene::home, named("Home"_s));
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.powerOn());
    // The link comes up by itself, which is the return, and goes again before the attempt.
    device.reportState(scene::home, "ready"_s);
    QVERIFY(device.client.record().contains(scene::announcement));
    device.reportState(scene::home, "idle"_s);
    const Fault succeeds = scene::connectFault(device.simulator, FaultKind::reply({}));
    QVERIFY(device.simulator.waitForCall(scene::connectCall(scene::home)));
    device.client.settle();
    QCOMPARE(device.client.record().count(scene::announcement), 1);
    QCOMPARE(scene::spoken(device.simulator), QStringList(scene::sentence(7)));
}

void PreferredNetworkTest::onlyAnIdleOrUnknownLinkIsTouched_data()
{
    QTest::addColumn<QString>("state");
    for (const char *state : {"disconnect", "failure", "association", "configuration", "ready", "online"}) {
        QTest::newRow(state) << QString::fromLatin1(state);
    }
}

void PreferredNetworkTest::onlyAnIdleOrUnknownLinkIsTouched()
{
    QFETCH(QString, state);
    PreferringDevice device;
    device.simulator.addService(scene::home, named("Home"_s));
    // Another network has the link; the preferred one could be joined.
    device.simulator.addService("wifi_020000000200_41_managed_psk"_s, named("A"_s));
    QVERIFY(device.startWithoutRadio());
    device.simulator.setServiceProperty(scene::home, "State"_s, "disconnect"_s);
    device.reportState("wifi_020000000200_41_managed_psk"_s, state);
    QVERIFY(device.powerOn());
    QVERIFY(device.attempt());
    QCOMPARE(device.log().lines().filter("isn't Idle"_s).size(), 1);
    const QString line = device.log().lines().filter("isn't Idle"_s).constFirst();
    QVERIFY2(line.startsWith("NetworkManager|debug|Interface wlan0 isn't Idle, is "_s), qPrintable(line));
    QVERIFY2(line.contains(state.at(0).toUpper() + state.mid(1)), qPrintable(line));
    QCOMPARE(device.serviceCalls(), QStringList());
}

void PreferredNetworkTest::idleOrUnknownLinkIsTouched_data()
{
    QTest::addColumn<QString>("interface");
    QTest::newRow("idle") << "wlan0"_s;
    QTest::newRow("nothing of wlan0 is there to be reported") << "wlan1"_s;
}

void PreferredNetworkTest::idleOrUnknownLinkIsTouched()
{
    QFETCH(QString, interface);
    PreferringDevice device;
    device.simulator.addService(scene::home, onInterface(interface));
    QVERIFY(device.startWithoutRadio());
    device.reportState(scene::home, "idle"_s);
    const Fault success = scene::connectFault(device.simulator, FaultKind::reply({}));
    QVERIFY(device.powerOn());
    QVERIFY(device.client.waitFor(scene::announcement));
    QCOMPARE(device.connectCalls(), QStringList(scene::connectCall(scene::home)));
}

void PreferredNetworkTest::otherNetworksAreSkippedWithALine()
{
    PreferringDevice device;
    device.simulator.addService(scene::cable, {{"AutoConnect"_s, false}});
    device.simulator.addService("wifi_020000000200_41_managed_psk"_s, named("A"_s));
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.powerOn());
    QVERIFY(device.attempt());
    QStringList lines = device.log().lines().filter("Skipping"_s);
    lines.sort(); // the walk has no order
    QCOMPARE(
        lines,
        (QStringList{
            "NetworkManager|debug|Skipping network of type \"ethernet\""_s,
            "NetworkManager|debug|Skipping network whose name doesn't match the prefered-network name."_s}));
    QCOMPARE(device.serviceCalls(), QStringList());
}

void PreferredNetworkTest::namesAreComparedExactly()
{
    PreferringDevice device;
    device.simulator.addService("wifi_020000000200_41_managed_psk"_s, named("home"_s));
    device.simulator.addService("wifi_020000000200_42_managed_psk"_s, named("Home "_s));
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.powerOn());
    QVERIFY(device.attempt());
    QCOMPARE(device.log().lines().filter("doesn't match"_s).size(), 2);
    QCOMPARE(device.serviceCalls(), QStringList());
}

void PreferredNetworkTest::secondNetworkOfThatNameIsTriedWhenTheFirstFails()
{
    PreferringDevice device;
    const QString psk = scene::home;
    const QString open = "wifi_020000000200_486f6d65_managed_none"_s;
    device.simulator.addService(psk, named("Home"_s));
    device.simulator.addService(open, named("Home"_s));
    const Fault failing = scene::connectFault(device.simulator, scene::connectRefusal());
    QVERIFY(device.startWithoutRadio());
    const Fault success = scene::connectFault(device.simulator, FaultKind::reply({}));
    QVERIFY(device.powerOn());
    QVERIFY(device.client.waitFor(scene::announcement));

    const QStringList calls = device.connectCalls();
    QCOMPARE(calls.size(), 2);
    const QString failed = calls.constFirst().section(QLatin1Char(' '), 0, 0);
    QCOMPARE(QSet<QString>(calls.cbegin(), calls.cend()),
             (QSet<QString>{scene::connectCall(psk), scene::connectCall(open)}));
    QVERIFY(device.log().lines().contains(
        "NetworkManager|warning|Failed to connect to prefered network \"Home\" (\"%1\")"_s.arg(failed)));
    QCOMPARE(device.log().lines().filter("|warning|"_s).size(), 1);
    QVERIFY(device.log().takeProblem(scene::connectRefused(failed)));
    QCOMPARE(device.client.record().count(scene::announcement), 1);
}

void PreferredNetworkTest::noOtherNetworkOfThatNameIsTriedAfterAnOperation()
{
    PreferringDevice device;
    device.simulator.addService(scene::home, named("Home"_s));
    device.simulator.addService("wifi_020000000200_486f6d65_managed_none"_s, named("Home"_s));
    device.simulator.addService(scene::den, named("Den"_s));
    device.log().tolerate(scene::autoConnectRefused);
    const Fault failing = scene::connectFault(device.simulator, scene::connectRefusal().after(6000));
    QVERIFY(device.startWithoutRadio());
    const Fault success = scene::connectFault(device.simulator, FaultKind::reply({}));
    QVERIFY(device.powerOn());
    QVERIFY(waitUntil([&] { return device.connectCalls().size() == 1; }));
    const QString failed = device.connectCalls().constFirst().section(QLatin1Char(' '), 0, 0);

    device.client.send("connect", scene::den);
    QVERIFY(device.log().waitFor(
        "NetworkManager|warning|Failed to connect to prefered network \"Home\" (\"%1\")"_s.arg(failed)));
    QVERIFY(device.log().waitFor(dropped));
    QVERIFY(device.client.waitFor("connect -> true"_s));
    device.client.settle();
    QCOMPARE(device.connectCalls().mid(1), QStringList(scene::connectCall(scene::den)));
    QVERIFY(device.log().takeProblem(scene::connectRefused(failed)));
}

void PreferredNetworkTest::noOtherNetworkOfThatNameIsTriedOnceItIsNoLongerPreferred()
{
    PreferringDevice device;
    device.simulator.addService(scene::home, named("Home"_s));
    device.simulator.addService("wifi_020000000200_486f6d65_managed_none"_s, named("Home"_s));
    const Fault failing = scene::connectFault(device.simulator, scene::connectRefusal().after(6000));
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.powerOn());
    QVERIFY(waitUntil([&] { return device.connectCalls().size() == 1; }));
    const QString failed = device.connectCalls().constFirst().section(QLatin1Char(' '), 0, 0);

    device.client.send("disconnect", failed.section(QLatin1Char('/'), -1));
    QVERIFY(device.log().waitFor(
        "NetworkManager|warning|Failed to connect to prefered network \"Home\" (\"%1\")"_s.arg(failed)));
    QVERIFY(device.log().waitFor(dropped));
    device.client.settle();
    QCOMPARE(device.connectCalls().size(), 1);
    QVERIFY(device.log().takeProblem(scene::connectRefused(failed)));
    device.tolerateMissingAddress();
}

void PreferredNetworkTest::noOtherNetworkOfThatNameIsTriedAfterASuccess()
{
    PreferringDevice device;
    device.simulator.addService(scene::home, named("Home"_s));
    device.simulator.addService("wifi_020000000200_486f6d65_managed_none"_s, named("Home"_s));
    const Fault success = scene::connectFault(device.simulator, FaultKind::reply({}));
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.powerOn());
    QVERIFY(device.client.waitFor(scene::announcement));
    device.client.settle();
    QCOMPARE(device.connectCalls().size(), 1);
}

void PreferredNetworkTest::failureLeavesEverythingAsItIsAndTheReturnIsStillAnnounced()
{
    PreferringDevice device;
    device.simulator.addService(scene::home, named("Home"_s));
    const Fault failing = scene::connectFault(device.simulator, scene::connectRefusal());
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.powerOn());
    QVERIFY(device.log().waitFor(
        "NetworkManager|warning|Failed to connect to prefered network \"Home\" (\"%1\")"_s.arg(
            scene::servicePath(scene::home))));
    device.client.settle();
    QCOMPARE(device.connectCalls(), QStringList(scene::connectCall(scene::home)));
    QCOMPARE(device.client.record(), (QStringList{"powerChanged(true)"_s, "setWifiPower -> true"_s}));
    QCOMPARE(scene::spoken(device.simulator), QStringList());
    QVERIFY(device.daemon.sandbox().settings("main"_s).contains("Home"));
    QVERIFY(device.log().takeProblem(scene::connectRefused(scene::servicePath(scene::home))));

    device.reportState(scene::home, "ready"_s);
    QCOMPARE(device.client.record().count(scene::announcement), 1);
}

void PreferredNetworkTest::busyPreferredNetworkEndsTheAttempt()
{
    PreferringDevice device;
    // Both go by the preferred name; each is busy on a radio of its own, while wlan0 is idle.
    device.simulator.addService("wifi_020000000200_41_managed_psk"_s, named("A"_s));
    device.simulator.addService("wifi_020000000201_486f6d65_managed_psk"_s, onInterface("wlan1"_s));
    device.simulator.addService("wifi_020000000202_486f6d65_managed_psk"_s, onInterface("wlan2"_s));
    QVERIFY(device.startWithoutRadio());
    device.reportState("wifi_020000000201_486f6d65_managed_psk"_s, "association"_s);
    device.reportState("wifi_020000000202_486f6d65_managed_psk"_s, "association"_s);
    device.reportState("wifi_020000000200_41_managed_psk"_s, "idle"_s);
    QVERIFY(device.powerOn());
    const QString warning =
        "NetworkManager|warning|State of prefered network is not idle, but the state of the wlan0 "
        "interface is?!?"_s;
    QVERIFY(device.log().waitFor(warning));
    device.client.settle();
    // At the first of them.
    QCOMPARE(device.log().lines().count(warning), 1);
    QCOMPARE(device.connectCalls(), QStringList());
}

static const Suite<PreferredNetworkTest> preferredNetworkTest;
#include "PreferredNetworkTest.moc"
