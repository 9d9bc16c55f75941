#include "OperationsScene.h"
#include "Suite.h"
#include <QTest>

#include <csignal>

using namespace scene;
using namespace test_support;

/// What else may happen while an operation waits for ConnMan to connect, and how such a wait ends early.
class WaitingOperationTest : public QObject
{
    Q_OBJECT
private slots:
    void preferredNetworkIsNotTriedMeanwhile();
    void preferredNetworkIsTriedAfterwards();
    void signalEndsTheWait_data();
    void signalEndsTheWait();
    void signalEndsNestedWaits();
    void signalEndsTheWaitForThePreferredNetwork();
    void lossOfTheBusEndsTheWait();
    void lossOfTheBusEndsTheWaitForThePowerState();
    void lossOfTheBusEndsTheWaitForTheAddressCommand();
};

namespace {

QVariantMap idle(const QString &name)
{
    return {{"Name"_s, name}, {"State"_s, "idle"_s}};
}

struct WaitingDevice : Operations
{
    WaitingDevice()
    {
        daemon.sandbox().setSettings("main"_s, homePreferred);
        daemon.setLoggingRules("NetworkManager=true"_s);
        simulator.setTechnologyProperty("wifi"_s, "Powered"_s, false);
        simulator.addService(home, idle("Home"_s));
        simulator.addService(den, idle("Den"_s));
        tolerateRefusedAutoConnect();
    }

    QStringList connects() { return simulator.calls().filter("net.connman.Service.Connect()"_s); }

    /// A client's connect that ConnMan does not answer.
    bool startConnecting(const QString &identifier)
    {
        const int before = connects().count(connectCall(identifier));
        client.send("connect", identifier);
        return waitUntil([&] { return connects().count(connectCall(identifier)) > before; });
    }
};

/// Bus, ConnMan and daemon end together: what the daemon could still say of ConnMan is no matter here.
bool endsWithStatusOneAndSaysSo(WaitingDevice &device)
{
    device.bus.stop();
    const int status = device.daemon.waitForExit();
    const bool isSaid = device.log().lines().count(busLost) == 1;
    const QStringList problems = device.log().problems();
    for (const QString &problem : problems) {
        device.log().tolerate(problem);
    }
    return status == EXIT_FAILURE && isSaid;
}
} // namespace

void WaitingOperationTest::preferredNetworkIsNotTriedMeanwhile()
{
    WaitingDevice device;
    QVERIFY(device.begin());
    const Fault unanswered = connectFault(device.simulator, FaultKind::never());
    QVERIFY(device.client.call("setWifiPower", true).toBool());
    QVERIFY(device.startConnecting(den));
    QVERIFY(device.log().waitFor(
        "NetworkManager|debug|Prefered network isn't tried, an operation waits for its connection."_s));
    device.client.settle();
    QCOMPARE(device.connects(), {connectCall(den)});
    QCOMPARE(device.simulator.calls().count(scan), 0);
    QVERIFY(device.daemon.stop());
}

void WaitingOperationTest::preferredNetworkIsTriedAfterwards()
{
    WaitingDevice device;
    QVERIFY(device.begin());
    const Fault refused = connectFault(device.simulator, connectRefusal());
    QCOMPARE(device.client.call("connect", den).toBool(), false);
    QVERIFY(device.log().takeProblem(connectRefused(servicePath(den))));
    const Fault success = connectFault(device.simulator, FaultKind::reply({}));
    QVERIFY(device.client.call("setWifiPower", true).toBool());
    QVERIFY(device.simulator.waitForCall(connectCall(home)));
}

void WaitingOperationTest::signalEndsTheWait_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
}

// An operation that is cut short still answers its client, and lets ConnMan connect by itself again: neither
// would be if the process had only been killed.
void WaitingOperationTest::signalEndsTheWait()
{
    QFETCH(int, signal);
    WaitingDevice device;
    QVERIFY(device.begin());
    const Fault unanswered = connectFault(device.simulator, FaultKind::never());
    QVERIFY(device.startConnecting(den));
    QVERIFY(device.daemon.sendSignal(signal));
    QCOMPARE(device.daemon.waitForExit(), EXIT_SUCCESS);
    QVERIFY(device.client.waitFor("connect -> false"_s));
    QVERIFY(device.simulator.calls().contains(autoConnect(den, true)));
}

void WaitingOperationTest::signalEndsNestedWaits()
{
    constexpr int Depth = 5;
    WaitingDevice device;
    QVERIFY(device.begin());
    const Fault unanswered =
        device.simulator.injectFault("net.connman.Service"_s, "Connect"_s, FaultKind::never(), {}, Depth);
    for (int call = 0; call < Depth; ++call) {
        QVERIFY(device.startConnecting(den));
    }
    QVERIFY(device.daemon.sendSignal(SIGTERM));
    QCOMPARE(device.daemon.waitForExit(), EXIT_SUCCESS);
    QVERIFY(device.client.waitFor("connect -> false"_s, Depth));
}

void WaitingOperationTest::signalEndsTheWaitForThePreferredNetwork()
{
    WaitingDevice device;
    QVERIFY(device.begin());
    const Fault unanswered = connectFault(device.simulator, FaultKind::never());
    QVERIFY(device.client.call("setWifiPower", true).toBool());
    QVERIFY(device.simulator.waitForCall(connectCall(home)));
    QVERIFY(device.daemon.sendSignal(SIGTERM));
    QCOMPARE(device.daemon.waitForExit(), EXIT_SUCCESS);
    QVERIFY(device.log().lines().contains(
        "NetworkManager|warning|Failed to connect to prefered network \"Home\" (\"%1\")"_s.arg(
            servicePath(home))));
}

void WaitingOperationTest::lossOfTheBusEndsTheWait()
{
    WaitingDevice device;
    QVERIFY(device.begin());
    Fault unanswered = connectFault(device.simulator, FaultKind::never());
    QVERIFY(device.startConnecting(den));
    unanswered.verify();
    QVERIFY(endsWithStatusOneAndSaysSo(device));
}

void WaitingOperationTest::lossOfTheBusEndsTheWaitForThePowerState()
{
    WaitingDevice device;
    const QString asking = "/net/connman/technology/wifi net.connman.Technology.GetProperties()"_s;
    device.simulator.removeTechnologyProperty("wifi"_s, "Powered"_s);
    QVERIFY(device.start());
    QVERIFY(waitUntil([&] { return device.simulator.calls().count(asking) > 2; }));
    QVERIFY(endsWithStatusOneAndSaysSo(device));
}

void WaitingOperationTest::lossOfTheBusEndsTheWaitForTheAddressCommand()
{
    WaitingDevice device;
    device.simulator.setSerialNumber(100);
    device.commands().script(setAddress, {"hang"_s});
    QVERIFY(device.start());
    QVERIFY(device.commands().waitForCall(setAddress));
    QVERIFY(endsWithStatusOneAndSaysSo(device));
    QCOMPARE(device.commands().calls().count(setAddress), 1);
}

static const Suite<WaitingOperationTest> waitingOperationTest;
#include "WaitingOperationTest.moc"
