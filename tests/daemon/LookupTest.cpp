#include "OperationsScene.h"
#include "Suite.h"
#include <QElapsedTimer>
#include <QTest>

using namespace test_support;

/// How operations find the network that a client names.
class LookupTest : public QObject
{
    Q_OBJECT
private slots:
    void knownNetworkIsFoundWithoutScan();
    void missingNetworkIsLookedForAgainAfterOneScan();
    void networkAnnouncedAfterOthersIsStillFound_data();
    void networkAnnouncedAfterOthersIsStillFound();
    void announcementIsWaitedForAFifthOfASecond();
    void networkAnnouncedMuchLaterIsNotWaitedFor();
    void networkMissingTwiceIsReportedAfterOneScan();
    void failedScanIsToldAndTheNetworkMissing();
    void networkAnnouncedDuringAFailingScanIsFound();
    void identifierIsComparedExactly_data();
    void identifierIsComparedExactly();
    void nameOnTheAirIsNoIdentifier();
    void wifiOperationSeesOnlyWifi_data();
    void wifiOperationSeesOnlyWifi();
    void generalOperationSeesEveryType();
    void networkThatConnmanRemovedIsNotFound();
};

namespace {

QString unknownSignal(const QString &identifier)
{
    return "error(\"Unknown network: '%1'\")"_s.arg(identifier);
}

FaultKind noCarrier()
{
    return FaultKind::error("net.connman.Error.NoCarrier"_s, "No carrier"_s);
}

int scans(TestDevice &device)
{
    return device.simulator.calls().count(scene::scan);
}
} // namespace

void LookupTest::knownNetworkIsFoundWithoutScan()
{
    TestDevice device;
    device.simulator.addService(scene::home);
    QVERIFY(device.startWithoutRadio());
    QVERIFY(!device.client.call("getConfiguration", scene::home).toMap().isEmpty());
    QCOMPARE(scans(device), 0);
}

void LookupTest::missingNetworkIsLookedForAgainAfterOneScan()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    const QString found = device.simulator.addNetwork({{"ssid"_s, "Home"_s}, {"atOnce"_s, false}});
    QVERIFY(!device.client.call("getConfiguration", found).toMap().isEmpty());
    QCOMPARE(scans(device), 1);
    QCOMPARE(device.client.record().filter("error"_s), QStringList());
}

void LookupTest::networkAnnouncedAfterOthersIsStillFound_data()
{
    QTest::addColumn<int>("announcedAfterMs");
    QTest::newRow("soon") << 40;
    QTest::newRow("as ConnMan does") << 100;
}

// Announcements about something else, queued before the scan's reply or coming before the one that matters,
// are not taken for it.
void LookupTest::networkAnnouncedAfterOthersIsStillFound()
{
    QFETCH(int, announcedAfterMs);
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    device.simulator.setTiming("scan"_s, 200);
    device.simulator.setTiming("announce"_s, announcedAfterMs);
    const QString found =
        device.simulator.addNetwork({{"ssid"_s, "Home"_s}, {"security"_s, "none"_s}, {"atOnce"_s, false}});
    device.client.send("connect", found);
    QVERIFY(device.simulator.waitForCall(scene::scan));
    for (int announcement = 0; announcement < 3; ++announcement) {
        device.announceNothing();
    }
    QVERIFY(device.client.waitFor("connect -> true"_s));
    device.log().tolerate(scene::autoConnectRefused);
}

// How long it takes at the most is no matter here: machines that run tests are busy. Timers may
// come a little early.
void LookupTest::announcementIsWaitedForAFifthOfASecond()
{
    constexpr int scanMs = 300;
    constexpr int limitMs = 200;
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    device.simulator.setTiming("scan"_s, scanMs);
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(device.client.call("getConfiguration", "wifi_x"_s).toMap(), QVariantMap());
    QVERIFY2(clock.elapsed() > (scanMs + limitMs) * 9 / 10, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(device.log().takeProblem(scene::noSuchNetwork("wifi_x"_s)));
}

// The clients wait as long.
void LookupTest::networkAnnouncedMuchLaterIsNotWaitedFor()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    device.simulator.setTiming("announce"_s, 1500);
    const QString late = device.simulator.addNetwork({{"ssid"_s, "Home"_s}, {"atOnce"_s, false}});
    QCOMPARE(device.client.call("getConfiguration", late).toMap(), QVariantMap());
    QVERIFY(device.log().takeProblem(scene::noSuchNetwork(late)));
}

void LookupTest::networkMissingTwiceIsReportedAfterOneScan()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    QCOMPARE(device.client.call("getConfiguration", "wifi_x"_s).toMap(), QVariantMap());
    QCOMPARE(scans(device), 1);
    QCOMPARE(device.client.record(), (QStringList{unknownSignal("wifi_x"_s), "getConfiguration -> {}"_s}));
    QVERIFY(device.log().takeProblem(scene::noSuchNetwork("wifi_x"_s)));
}

void LookupTest::failedScanIsToldAndTheNetworkMissing()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    const Fault failing = scene::failingScan(device.simulator);
    QCOMPARE(device.client.call("connect", "wifi_x"_s).toBool(), false);
    QCOMPARE(device.client.record(), (QStringList{unknownSignal("wifi_x"_s), "connect -> false"_s}));
    QVERIFY(device.log().takeProblem(scene::scanFailed));
    QVERIFY(device.log().takeProblem(scene::noSuchNetwork("wifi_x"_s)));
}

void LookupTest::networkAnnouncedDuringAFailingScanIsFound()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    const Fault failing =
        device.simulator.injectFault("net.connman.Technology"_s, "Scan"_s, noCarrier().after(500));
    device.client.send("getConfiguration", scene::home);
    QVERIFY(device.simulator.waitForCall(scene::scan));
    device.simulator.addService(scene::home);
    QVERIFY(device.log().takeProblem(scene::scanFailed));
    QTRY_COMPARE(device.client.record().filter("getConfiguration -> "_s).size(), 1);
    QCOMPARE(device.client.record().filter("error"_s), QStringList());
}

void LookupTest::identifierIsComparedExactly_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::newRow("other case") << scene::home.toUpper();
    QTest::newRow("beginning") << scene::home.chopped(4);
    QTest::newRow("more than it") << scene::home + "_"_s;
    QTest::newRow("blank after it") << scene::home + " "_s;
    QTest::newRow("its object path") << scene::servicePath(scene::home);
}

void LookupTest::identifierIsComparedExactly()
{
    QFETCH(QString, identifier);
    TestDevice device;
    device.simulator.addService(scene::home);
    QVERIFY(device.startWithoutRadio());
    QCOMPARE(device.client.call("getConfiguration", identifier).toMap(), QVariantMap());
    QVERIFY(device.log().takeProblem(scene::noSuchNetwork(identifier)));
}

void LookupTest::nameOnTheAirIsNoIdentifier()
{
    TestDevice device;
    device.simulator.addService(scene::home, {{"Name"_s, "Home"_s}});
    QVERIFY(device.startWithoutRadio());
    QCOMPARE(device.client.call("connect", "Home"_s).toBool(), false);
    QVERIFY(device.log().takeProblem(scene::noSuchNetwork("Home"_s)));
}

void LookupTest::wifiOperationSeesOnlyWifi_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<int>("scanCount");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("signal");
    QTest::newRow("forget") << "forgetWifi" << QVariantList{scene::cable} << 1
                            << scene::noSuchNetwork(scene::cable) << unknownSignal(scene::cable);
    QTest::newRow("register") << "registerWifi" << QVariantList{scene::cable, "secret"_s} << 3
                              << scene::noSuchNetwork(scene::cable) << unknownSignal(scene::cable);
    QTest::newRow("WPS") << "registerWifiWps" << QVariantList{scene::cable} << 2
                         << "NetworkManager|critical|Unknown network."
                         << "error(\"Unknown network.\")";
}

void LookupTest::wifiOperationSeesOnlyWifi()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(int, scanCount);
    QFETCH(QString, line);
    QFETCH(QString, signal);
    TestDevice device;
    device.simulator.addService(scene::cable, {{"AutoConnect"_s, false}});
    QVERIFY(device.startWithoutRadio());
    device.client.callForReply(method, arguments);
    QCOMPARE(scans(device), scanCount);
    QCOMPARE(device.client.record(), (QStringList{signal, method + " -> false"_s}));
    QVERIFY(device.log().takeProblem(line));
}

void LookupTest::generalOperationSeesEveryType()
{
    TestDevice device;
    device.simulator.addService(scene::cable, {{"AutoConnect"_s, false}});
    QVERIFY(device.startWithoutRadio());
    QVERIFY(!device.client.call("getConfiguration", scene::cable).toMap().isEmpty());
    QCOMPARE(scans(device), 0);
}

void LookupTest::networkThatConnmanRemovedIsNotFound()
{
    TestDevice device;
    device.simulator.addService(scene::home);
    QVERIFY(device.startWithoutRadio());
    QVERIFY(!device.client.call("getConfiguration", scene::home).toMap().isEmpty());
    device.simulator.removeService(scene::home);
    QCOMPARE(device.client.call("getConfiguration", scene::home).toMap(), QVariantMap());
    QVERIFY(device.log().takeProblem(scene::noSuchNetwork(scene::home)));
}

static const Suite<LookupTest> lookupTest;
#include "LookupTest.moc"
