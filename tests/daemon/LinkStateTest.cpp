#include "EventWait.h"
#include "Scene.h"
#include "Suite.h"
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

using namespace test_support;

/// What follows from the state of the Wi-Fi link: when the return to a network is announced; and how
/// ConnMan's own automatic connection is kept out of the way of an explicit one.
class LinkStateTest : public QObject
{
    Q_OBJECT
private slots:
    void linkThatComesUpAfterPowerOnIsAnnouncedOnce_data();
    void linkThatComesUpAfterPowerOnIsAnnouncedOnce();
    void linkThatComesUpByItselfIsNotAnnounced();
    void announcementNamesThePreferredNetworkWhicheverIsUp();
    void announcementWithoutPreferredNetworkHasNoName();
    void switchingOffDoesNotTakeTheAnnouncementBack();
    void explicitConnectTakesTheAnnouncementBack();
    void registrationTakesTheAnnouncementBack();
    void wpsRegistrationLeavesTheAnnouncementToTheLink();
    void failedConnectLeavesTheAnnouncementToTheLink();
    void changedStateReachesTheLedTwoSecondsLater();
    void autoConnectIsOffOnlyWhileConnecting();
    void autoConnectComesBackAfterAFailure();
};

namespace {

/// A device with the network "Home", which is the preferred one, and Wi-Fi switched off.
struct OffDevice : TestDevice
{
    OffDevice()
    {
        daemon.sandbox().setSettings("main"_s, scene::homePreferred);
        simulator.setTechnologyProperty("wifi"_s, "Powered"_s, false);
        constexpr int never = -1;
        simulator.setTiming("autoConnect"_s, never);
        simulator.addService(scene::home,
                             {{"Name"_s, "Home"_s}, {"Favorite"_s, true}, {"AutoConnect"_s, false}});
    }
    bool setPower(bool on) { return client.call("setWifiPower", on).toBool(); }
    bool said(const QStringList &sentences)
    {
        return waitUntil([&] { return scene::spoken(simulator) == sentences; });
    }
    QStringList writes()
    {
        return simulator.calls().filter(QRegularExpression("Service\\.(SetProperty|Connect)"_s));
    }
};

QString setAutoConnect(const QString &identifier, bool on)
{
    return scene::servicePath(identifier) +
           " net.connman.Service.SetProperty(\"AutoConnect\", <%1>)"_s.arg(on ? "true"_s : "false"_s);
}

} // namespace

void LinkStateTest::linkThatComesUpAfterPowerOnIsAnnouncedOnce_data()
{
    QTest::addColumn<QString>("state");
    QTest::newRow("ready") << "ready";
    QTest::newRow("online") << "online";
}

void LinkStateTest::linkThatComesUpAfterPowerOnIsAnnouncedOnce()
{
    QFETCH(QString, state);
    OffDevice device;
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.setPower(true));
    device.reportState(scene::home, state);
    device.reportState(scene::home, "idle"_s);
    device.reportState(scene::home, state);
    QCOMPARE(device.client.record(),
             (QStringList{"powerChanged(true)"_s, "setWifiPower -> true"_s, scene::announcement}));
    QVERIFY(device.said({scene::sentence(7)}));
}

void LinkStateTest::linkThatComesUpByItselfIsNotAnnounced()
{
    OffDevice device;
    QVERIFY(device.startWithoutRadio());
    device.reportState(scene::home, "ready"_s);
    QCOMPARE(device.devices().led("led8"_s), LedPattern::on());
    QCOMPARE(device.client.record(), QStringList());
    QCOMPARE(scene::spoken(device.simulator), QStringList());
}

void LinkStateTest::announcementNamesThePreferredNetworkWhicheverIsUp()
{
    const QString other = "wifi_020000000200_41_managed_psk"_s;
    OffDevice device;
    device.simulator.addService(other, {{"Name"_s, "A"_s}});
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.setPower(true));
    device.reportState(other, "ready"_s);
    QCOMPARE(device.client.record().constLast(), scene::announcement);
}

void LinkStateTest::announcementWithoutPreferredNetworkHasNoName()
{
    OffDevice device;
    device.daemon.sandbox().setSettings("main"_s, "");
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.setPower(true));
    device.reportState(scene::home, "ready"_s);
    QCOMPARE(device.client.record().constLast(), "networkConnected(\"\")"_s);
}

void LinkStateTest::switchingOffDoesNotTakeTheAnnouncementBack()
{
    OffDevice device;
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.setPower(true));
    QVERIFY(device.setPower(false)); // with which the networks are gone
    device.simulator.addService(scene::home, {{"Name"_s, "Home"_s}, {"State"_s, "ready"_s}});
    QVERIFY(device.client.waitFor(scene::announcement));
}

void LinkStateTest::explicitConnectTakesTheAnnouncementBack()
{
    OffDevice device;
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.setPower(true));
    const Fault success = scene::connectFault(device.simulator, FaultKind::reply({}));
    QVERIFY(device.client.call("connect", scene::home).toBool());
    device.reportState(scene::home, "ready"_s);
    QCOMPARE(device.devices().led("led8"_s), LedPattern::on());
    QCOMPARE(device.client.record().filter("networkConnected"_s),
             QStringList("networkConnected(\"%1\")"_s.arg(scene::home)));
    QVERIFY(device.said({scene::sentence(6)}));
}

void LinkStateTest::registrationTakesTheAnnouncementBack()
{
    OffDevice device;
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.setPower(true));
    const Fault success = scene::connectFault(device.simulator, FaultKind::reply({}));
    QVERIFY(device.client.call("registerWifi", scene::home, "secret"_s).toBool());
    device.reportState(scene::home, "ready"_s);
    QCOMPARE(device.devices().led("led8"_s), LedPattern::on());
    QCOMPARE(device.client.record().filter("networkConnected"_s), QStringList());
    QVERIFY(device.said({scene::sentence(6)}));
}

void LinkStateTest::wpsRegistrationLeavesTheAnnouncementToTheLink()
{
    const QString den = "wifi_020000000200_44656e_managed_psk"_s;
    OffDevice device;
    device.simulator.addService(den, {{"Name"_s, "Den"_s}});
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.setPower(true));
    const Fault success = scene::connectFault(device.simulator, FaultKind::reply({}));
    QVERIFY(device.client.call("registerWifiWps", den).toBool());
    device.reportState(den, "ready"_s);
    QCOMPARE(device.client.record().constLast(), "networkConnected(\"Den\")"_s);
    QVERIFY(device.said({scene::sentence(7)}));
    device.log().tolerate(scene::autoConnectRefused);
}

void LinkStateTest::failedConnectLeavesTheAnnouncementToTheLink()
{
    OffDevice device;
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.setPower(true));
    const Fault failing = scene::connectFault(device.simulator, scene::connectRefusal());
    QVERIFY(!device.client.call("connect", scene::home).toBool());
    device.reportState(scene::home, "ready"_s);
    QCOMPARE(device.client.record().constLast(), scene::announcement);
    QVERIFY(device.log().takeProblem(scene::connectRefused(scene::servicePath(scene::home))));
}

void LinkStateTest::changedStateReachesTheLedTwoSecondsLater()
{
    OffDevice device;
    QVERIFY(device.startWithoutRadio());
    device.simulator.setServiceProperty(scene::home, "State"_s, "ready"_s);
    device.client.settle();
    QCOMPARE(device.devices().led("led8"_s), LedPattern::off());
    QElapsedTimer clock;
    clock.start();
    QVERIFY(device.devices().waitForLed("led8"_s, LedPattern::on()));
    QVERIFY2(clock.elapsed() > 1700, qPrintable(QString::number(clock.elapsed())));
}

void LinkStateTest::autoConnectIsOffOnlyWhileConnecting()
{
    const QString other = "wifi_020000000200_41_managed_psk"_s;
    OffDevice device;
    device.daemon.setLoggingRules("NetworkManager.debug=true"_s);
    device.simulator.addService(other, {{"Name"_s, "A"_s}});
    device.simulator.addService(scene::cable, {{"AutoConnect"_s, false}});
    QVERIFY(device.startWithoutRadio());
    device.simulator.clearCalls();
    const Fault success = scene::connectFault(device.simulator, FaultKind::reply({}));
    QVERIFY(device.client.call("connect", scene::home).toBool());

    // Of every Wi-Fi network, in no order; the cable is left alone, each time with a line.
    const QStringList writes = device.writes();
    QCOMPARE(writes.size(), 5);
    const auto sorted = [](QStringList lines) {
        lines.sort();
        return lines;
    };
    QCOMPARE(sorted(writes.mid(0, 2)),
             sorted({setAutoConnect(scene::home, false), setAutoConnect(other, false)}));
    QCOMPARE(writes.at(2), scene::connectCall(scene::home));
    QCOMPARE(sorted(writes.mid(3, 2)),
             sorted({setAutoConnect(scene::home, true), setAutoConnect(other, true)}));
    QCOMPARE(device.log().lines().count("NetworkManager|debug|Skipping network of type \"ethernet\""_s), 2);
    device.log().tolerate(scene::autoConnectRefused);
}

void LinkStateTest::autoConnectComesBackAfterAFailure()
{
    OffDevice device;
    QVERIFY(device.startWithoutRadio());
    device.simulator.clearCalls();
    const Fault failing = scene::connectFault(device.simulator, scene::connectRefusal());
    QVERIFY(!device.client.call("connect", scene::home).toBool());
    QCOMPARE(device.writes(),
             (QStringList{setAutoConnect(scene::home, false), scene::connectCall(scene::home),
                          setAutoConnect(scene::home, true)}));
    QCOMPARE(device.simulator.serviceProperties(scene::home).value("AutoConnect"_s).toBool(), true);
    QVERIFY(device.log().takeProblem(scene::connectRefused(scene::servicePath(scene::home))));
}

static const Suite<LinkStateTest> linkStateTest;
#include "LinkStateTest.moc"
