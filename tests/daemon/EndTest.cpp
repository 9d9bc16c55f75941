#include "Keys.h"
#include "Scene.h"
#include "Suite.h"

#include <algorithm>
#include <csignal>
#include <functional>
#include <optional>

#include <QDir>
#include <QTest>

using namespace test_support;

namespace {

/// A device on which something does not answer.
struct HangingDevice : TestDevice
{
    std::optional<Fault> silence;
};

/// Starts the daemon and brings it to a moment in which its thread is blocked; true when it is.
using Moment = std::function<bool(HangingDevice &)>;

} // namespace

Q_DECLARE_METATYPE(Moment)

/// The end of the process where something keeps its event loop from turning.
class EndTest : public QObject
{
    Q_OBJECT

private slots:
    void firstSignalEndsABlockedDaemonWithStatusZero_data();
    void firstSignalEndsABlockedDaemonWithStatusZero();
    void firstSignalEndsADaemonThatWaitsForThePowerState();
    void firstSignalEndsADaemonWithinAPowerCycle();
    void secondSignalEndsABlockedDaemonAtOnce_data() { firstSignalEndsABlockedDaemonWithStatusZero_data(); }
    void secondSignalEndsABlockedDaemonAtOnce();
    void runningCommandEndsWithAKilledDaemon_data();
    void runningCommandEndsWithAKilledDaemon();
    void whatAKilledDaemonLeavesRunningIsEnded();
    void busLostDuringACommandEndsTheDaemonWithOneLineAndStatusOne();
};

namespace {

const QString busLost = "default|critical|Connection to system-bus lost."_s;
const QString manager = "net.connman.Manager"_s;
const QString service = "net.connman.Service"_s;
const QString technology = "net.connman.Technology"_s;
const QString configurationManager = "com.tactora.ConfigurationManager"_s;

Moment commandHangsAtStart(const QString &command)
{
    return [command](HangingDevice &device) {
        device.commands().script(command, {"deaf"_s, "hang"_s});
        return device.start() && device.commands().waitForCall(command);
    };
}

bool addressCommandHangs(HangingDevice &device)
{
    device.simulator.setSerialNumber(0);
    device.commands().script("ip link set dev wlan0 address"_s, {"hang"_s});
    return device.start() &&
           device.commands().waitForCall("ip link set dev wlan0 address 02:a7:c4:03:0d:40"_s);
}

bool regionCommandOfAClientHangs(HangingDevice &device)
{
    device.commands().script("iw reg"_s, {"hang"_s});
    if (!device.startWithoutRadio()) {
        return false;
    }
    device.client.send("setWifiRegion", "DE"_s);
    return device.commands().waitForCall("iw reg set DE"_s);
}

bool connmanctlHangs(HangingDevice &device)
{
    device.commands().script("connmanctl"_s, {"hang"_s});
    if (!device.startWithoutRadio()) {
        return false;
    }
    keys::pressChord(device.daemon.sandbox().keyboard(), keys::wifiOff);
    return device.commands().waitForCall("connmanctl disable wifi"_s);
}

Moment peerIsSilentAtStart(const QString &interface, const QString &member)
{
    return [=](HangingDevice &device) {
        device.silence.emplace(device.simulator.injectFault(interface, member, FaultKind::never()));
        return device.start() && device.simulator.waitForCall("/ %1.%2("_s.arg(interface, member));
    };
}

/// ConnMan does not answer what the daemon calls because of a client's call.
Moment connmanIsSilent(const QString &interface, const QString &member,
                       const std::function<void(DaemonClient &)> &call)
{
    return [=](HangingDevice &device) {
        device.simulator.addNetwork({{"ssid"_s, "Home"_s}});
        // A network that is not connected has neither, but is asked for both before it is disconnected.
        device.log().tolerate("ConnmanService.properties|critical|Missing property \"Address\""_s);
        device.log().tolerate("ConnmanService.properties|critical|Missing property \"Gateway\""_s);
        if (!device.startWithoutRadio()) {
            return false;
        }
        device.silence.emplace(device.simulator.injectFault(interface, member, FaultKind::never()));
        call(device.client);
        return QTest::qWaitFor([&device] { return device.silence->fired() > 0; }, eventTimeoutMs);
    };
}

} // namespace

void EndTest::firstSignalEndsABlockedDaemonWithStatusZero_data()
{
    QTest::addColumn<Moment>("block");
    QTest::newRow("iw list") << commandHangsAtStart("iw list"_s);
    QTest::newRow("ip link") << commandHangsAtStart("ip link set dev wlan0 down"_s);
    QTest::newRow("address command") << Moment(addressCommandHangs);
    QTest::newRow("region command of the first start") << commandHangsAtStart("iw reg set US"_s);
    QTest::newRow("region command of a client") << Moment(regionCommandOfAClientHangs);
    QTest::newRow("connmanctl") << Moment(connmanctlHangs);
    QTest::newRow("configuration manager") << peerIsSilentAtStart(configurationManager, "process"_s);
    QTest::newRow("GetServices") << peerIsSilentAtStart(manager, "GetServices"_s);
    QTest::newRow("RegisterAgent") << peerIsSilentAtStart(manager, "RegisterAgent"_s);
    QTest::newRow("Scan") << connmanIsSilent(technology, "Scan"_s,
                                             [](DaemonClient &client) { client.send("networks"); });
    QTest::newRow("Disconnect") << connmanIsSilent(
        service, "Disconnect"_s, [](DaemonClient &client) { client.send("disconnect", scene::home); });
    QTest::newRow("SetProperty of a service")
        << connmanIsSilent(service, "SetProperty"_s, [](DaemonClient &client) {
               client.send("setNameservers", scene::home, QStringList("192.0.2.1"_s));
           });
    QTest::newRow("SetProperty of the technology") << connmanIsSilent(
        technology, "SetProperty"_s, [](DaemonClient &client) { client.send("setWifiPower", false); });
}

void EndTest::firstSignalEndsABlockedDaemonWithStatusZero()
{
    QFETCH(Moment, block);
    HangingDevice device;
    QVERIFY(block(device));
    QVERIFY(device.daemon.sendSignal(SIGTERM));
    QCOMPARE(device.daemon.waitForExit(), 0);
}

void EndTest::firstSignalEndsADaemonThatWaitsForThePowerState()
{
    TestDevice device;
    device.simulator.removeTechnologyProperty("wifi"_s, "Powered"_s);
    const QString unknown =
        "ConnmanTechnology|critical|Missing property \"Powered\" of service \"/net/connman/technology/wifi\""_s;
    device.log().tolerate(unknown);
    QVERIFY(device.start());
    QVERIFY(device.log().waitFor(unknown, 2));
    QVERIFY(device.daemon.sendSignal(SIGINT));
    QCOMPARE(device.daemon.waitForExit(), 0);
}

void EndTest::firstSignalEndsADaemonWithinAPowerCycle()
{
    TestDevice device;
    device.daemon.sandbox().setSettings("region"_s, scene::regionSweden);
    QVERIFY(device.start());
    QVERIFY(device.commands().waitForCall("connmanctl disable wifi"_s));
    QVERIFY(device.daemon.sendSignal(SIGTERM));
    QCOMPARE(device.daemon.waitForExit(), 0);
}

void EndTest::secondSignalEndsABlockedDaemonAtOnce()
{
    QFETCH(Moment, block);
    HangingDevice device;
    QVERIFY(block(device));
    QVERIFY(device.daemon.sendSignal(SIGTERM));
    QTRY_VERIFY(!device.daemon.catches(SIGTERM));
    QVERIFY(device.daemon.sendSignal(SIGTERM));
    QCOMPARE(device.daemon.waitForExit(), 128 + SIGTERM);
}

namespace {

/// Whether any program that the daemon has started still runs.
bool anyCommandRuns(TestDevice &device)
{
    const QByteArray mark = "STAND_IN_DIR=" + device.commands().directory().toLocal8Bit();
    const QStringList processes = QDir("/proc"_s).entryList({"[1-9]*"_s}, QDir::Dirs);
    return std::any_of(processes.cbegin(), processes.cend(), [&mark](const QString &process) {
        QFile environment("/proc/%1/environ"_s.arg(process));
        return environment.open(QIODevice::ReadOnly) && environment.readAll().contains(mark);
    });
}

} // namespace

void EndTest::runningCommandEndsWithAKilledDaemon_data()
{
    QTest::addColumn<Moment>("block");
    QTest::newRow("iw list") << commandHangsAtStart("iw list"_s);
    QTest::newRow("address command") << Moment(addressCommandHangs);
    QTest::newRow("region command") << Moment(regionCommandOfAClientHangs);
    QTest::newRow("connmanctl") << Moment(connmanctlHangs);
}

void EndTest::runningCommandEndsWithAKilledDaemon()
{
    QFETCH(Moment, block);
    HangingDevice device;
    QVERIFY(block(device));
    QVERIFY(anyCommandRuns(device));
    QVERIFY(device.daemon.sendSignal(SIGKILL));
    QCOMPARE(device.daemon.waitForExit(), 128 + SIGKILL);
    QTRY_VERIFY(!anyCommandRuns(device));
}

/// A child whose parent is killed before it could ask to end with it is ended by the init system, and here by
/// the test.
void EndTest::whatAKilledDaemonLeavesRunningIsEnded()
{
    TestDevice device;
    device.daemon.setWrapper({"/bin/sh"_s, "-c"_s, "/bin/sleep infinity & exec \"$@\""_s, "sh"_s});
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.daemon.sendSignal(SIGKILL));
    QCOMPARE(device.daemon.waitForExit(), 128 + SIGKILL);
    QVERIFY(anyCommandRuns(device));
    device.daemon.endLeftovers();
    QTRY_VERIFY(!anyCommandRuns(device));
}

void EndTest::busLostDuringACommandEndsTheDaemonWithOneLineAndStatusOne()
{
    TestDevice device;
    device.commands().script("iw reg"_s, {"hold"_s});
    QVERIFY(device.startWithoutRadio());
    device.client.send("setWifiRegion", "DE"_s);
    QVERIFY(device.commands().waitForCall("iw reg set DE"_s));
    device.bus.stop();
    QVERIFY(device.daemon.isRunning());
    device.commands().release();
    QCOMPARE(device.daemon.waitForExit(), 1);
    QVERIFY(device.log().takeProblem(busLost));
}

static const Suite<EndTest> suite;
#include "EndTest.moc"
