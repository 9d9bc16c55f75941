// The client with the daemon itself.
#include "ClientProgram.h"
#include "EventWait.h"
#include "Suite.h"
#include "TestDevice.h"
#include "Text.h"
#include <QTest>

using namespace test_support;

namespace {
const QString den = "wifi_020000000200_44656e_managed_psk"_s;
const QString servicePath = "/net/connman/service/"_s + den;

/// The daemon sets an address anew with every disconnect, and there is none to set yet.
const QStringList noAddressesYet = {
    "ConnmanService.properties|critical|Missing property \"Address\""_s,
    "ConnmanService.properties|critical|Missing property \"Gateway\""_s,
    "ConnmanService.properties|critical|Setting property \"IPv4.Configuration\" failed: \"Invalid arguments\""_s};

QString connectFailed(const QString &error, const QString &text)
{
    return "ConnmanService|critical|Failed to asynchronously call Connect on \"%1\" : QDBusError(\"%2\", \"%3\")"_s
        .arg(servicePath, error, text);
}

} // namespace

class ClientDaemonTest : public QObject
{
    Q_OBJECT
private slots:
    void networkIsRegisteredByItsName();
    void wrongPassphraseIsTold();
    void unknownNetworkIsTold();
    void connectIsCancelledWithCtrlC();

private:
    static bool begin(TestDevice &device)
    {
        const bool isStarted = device.startWithoutRadio();
        device.simulator.addNetwork(
            {{"ssid"_s, "Den"_s}, {"security"_s, "psk"_s}, {"passphrase"_s, "right secret"_s}});
        device.log().tolerate(
            "ConnmanService.properties|critical|Setting property \"AutoConnect\" failed: \"Invalid service\""_s);
        return isStarted;
    }
};

void ClientDaemonTest::networkIsRegisteredByItsName()
{
    TestDevice device;
    QVERIFY(begin(device));
    ClientProgram client({"register"_s, "Den"_s}, "right secret\n"_s);
    QCOMPARE(client.waitForExit(), 0);
    QCOMPARE(client.output(), "Done.\n"_s);
    ClientProgram list({"list"_s});
    QCOMPARE(list.waitForExit(), 0);
    QVERIFY2(list.output().contains(", signal 60, passphrase, known, "_s + den), qPrintable(list.output()));
}

void ClientDaemonTest::wrongPassphraseIsTold()
{
    TestDevice device;
    QVERIFY(begin(device));
    ClientProgram client({"register"_s, den}, "wrong secret\n"_s);
    QCOMPARE(client.waitForExit(), 1);
    QCOMPARE(client.errors(), "Failed: invalid-key\n"_s);
    device.log().tolerate(connectFailed("net.connman.Error.Failed"_s, "Input/output error"_s));
    device.log().tolerate(
        "ConnmanAgent|critical|Error: \"invalid-key\" on service \"%1\""_s.arg(servicePath));
    device.log().tolerate("NetworkManager|critical|Failed to register network: \"invalid-key\""_s);
}

void ClientDaemonTest::unknownNetworkIsTold()
{
    TestDevice device;
    QVERIFY(begin(device));
    ClientProgram client({"ipv4-address"_s, "=nowhere"_s});
    QCOMPARE(client.waitForExit(), 1);
    QCOMPARE(client.errors(), "Failed: Unknown network: 'nowhere'\n"_s);
    QVERIFY(device.log().takeProblem("NetworkManager|critical|No such network available: \"nowhere\""_s));
}

void ClientDaemonTest::connectIsCancelledWithCtrlC()
{
    TestDevice device;
    QVERIFY(begin(device));
    device.simulator.setTiming("association"_s, eventTimeoutMs);
    ClientProgram client({"register"_s, den}, "right secret\n"_s);
    QVERIFY(device.simulator.waitForCall(servicePath + " net.connman.Service.Connect"_s));
    QTRY_COMPARE(device.simulator.serviceProperties(den).value("State"_s).toString(), "association"_s);
    client.interrupt();
    QCOMPARE(client.waitForExit(), 130);
    QVERIFY(client.errors().contains("Cancelled: the network is disconnected.\n"_s));
    QCOMPARE(device.simulator.serviceProperties(den).value("State"_s).toString(), "idle"_s);
    device.log().tolerate(connectFailed("net.connman.Error.OperationAborted"_s, "Operation aborted"_s));
    device.log().tolerate("NetworkManager|critical|Failed to register network: \"\""_s);
    for (const QString &complaint : noAddressesYet) {
        device.log().tolerate(complaint);
    }
}

static const Suite<ClientDaemonTest> clientDaemonTest;
#include "ClientDaemonTest.moc"
