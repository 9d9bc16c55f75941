#include "BusMonitor.h"
#include "EventWait.h"
#include "Keys.h"
#include "OperationsScene.h"
#include "Suite.h"
#include <QTest>

using namespace scene;
using namespace test_support;

/// In which order the daemon calls ConnMan, speaks and tells its clients, as the bus sees it.
class OrderTest : public QObject
{
    Q_OBJECT
private slots:
    void operationCallsSpeaksAndTellsInOrder_data();
    void operationCallsSpeaksAndTellsInOrder();
    void returnToThePreferredNetworkIsSpokenBeforeItIsTold();
    void linkThatComesUpIsSpokenBeforeItIsTold();
    void chordIsSpokenBeforeThePowerIsTold();
};

namespace {
/// What the daemon sends to others, reading left out.
class Sent
{
public:
    bool isLike(const QStringList &expected)
    {
        waitUntil([&] { return members().size() >= expected.size(); });
        return members() == expected;
    }
    QStringList members() const
    {
        QStringList all = m_monitor.members();
        all.removeAll("GetProperties"_s);
        return all;
    }

private:
    BusMonitor m_monitor{"sender='com.tactora.NetworkManager'"_s};
};

/// The operations' own tests tell which of them leaves which line.
void tolerateRefusals(Operations &device)
{
    device.tolerateRefusedAutoConnect();
    device.tolerateMissingAddress();
    for (const QString &method : {"Connect"_s, "Disconnect"_s, "Remove"_s}) {
        device.log().tolerate(failedCall(method, den));
    }
    device.log().tolerate(
        "ConnmanService.properties|critical|Setting property \"IPv6.Configuration\" failed: \"Input/output error\""_s);
    device.log().tolerate(failedRegistration(QString()));
    device.log().tolerate("NetworkManager|critical|Unable to register to network \"Den\" using WPS."_s);
    device.log().tolerate(noSuchNetwork("x"_s));
}
} // namespace

void OrderTest::operationCallsSpeaksAndTellsInOrder_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("failing"); // the call that ConnMan refuses
    QTest::addColumn<QStringList>("sent");
    const auto row = [](const char *title, const char *method, const QVariantList &arguments,
                        const char *failing, const char *sent) {
        QTest::newRow(title) << method << arguments << failing
                             << QString::fromLatin1(sent).split(QLatin1Char(' '));
    };
    // The writes around Connect are those of "AutoConnect".
    row("connect", "connect", {den}, "", "SetProperty Connect speakFromId networkConnected SetProperty");
    row("connect fails", "connect", {den}, "Connect", "SetProperty Connect error speakFromId SetProperty");
    row("registerWifi", "registerWifi", {den, "secret"_s}, "",
        "SetProperty Connect speakFromId networkRegistered SetProperty");
    row("registerWifi fails", "registerWifi", {den, "secret"_s}, "Connect",
        "SetProperty Connect error speakFromId SetProperty");
    row("registerWifiWps", "registerWifiWps", {den, "12345670"_s}, "",
        "SetProperty Connect networkRegistered SetProperty");
    row("registerWifiWps fails", "registerWifiWps", {den, "12345670"_s}, "Connect",
        "SetProperty Connect error SetProperty");
    // Those after Disconnect and before Remove are of the IP configuration.
    row("disconnect", "disconnect", {den}, "", "Disconnect SetProperty networkDisconnected");
    row("disconnect fails", "disconnect", {den}, "Disconnect", "Disconnect SetProperty error");
    row("forgetWifi", "forgetWifi", {den}, "", "SetProperty SetProperty Remove networkForgot");
    row("forgetWifi fails", "forgetWifi", {den}, "Remove", "SetProperty SetProperty Remove error");
    row("configureIPv6 fails", "configureIPv6", {den, "off"_s}, "SetProperty", "SetProperty error");
    row("unknown network", "connect", {"x"_s}, "", "Scan error");
}

void OrderTest::operationCallsSpeaksAndTellsInOrder()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, failing);
    QFETCH(QStringList, sent);
    Operations device;
    device.simulator.addService(den, {{"Name"_s, "Den"_s}});
    QVERIFY(device.begin());
    std::vector<Fault> faults;
    if (!failing.isEmpty()) {
        faults.push_back(device.simulator.injectFault("net.connman.Service"_s, failing, connectRefusal()));
    } else if (sent.contains("Connect"_s)) {
        faults.push_back(connectFault(device.simulator, FaultKind::reply({})));
    }
    Sent traffic;

    device.client.callForReply(method, arguments);
    QVERIFY2(traffic.isLike(sent), qPrintable(traffic.members().join(QLatin1Char(' '))));
    tolerateRefusals(device);
}

void OrderTest::returnToThePreferredNetworkIsSpokenBeforeItIsTold()
{
    Operations device;
    device.daemon.sandbox().setSettings("main"_s, "[wifi]\nprefered=Den\n");
    device.simulator.setTechnologyProperty("wifi"_s, "Powered"_s, false);
    device.simulator.addService(den, {{"Name"_s, "Den"_s}});
    QVERIFY(device.begin());
    const Fault success = connectFault(device.simulator, FaultKind::reply({}));
    Sent traffic;
    QVERIFY(device.client.call("setWifiPower", true).toBool());

    const QStringList sent{"SetProperty"_s, "powerChanged"_s, "Scan"_s,
                           "Connect"_s,     "speakFromId"_s,  "networkConnected"_s};
    QVERIFY2(traffic.isLike(sent), qPrintable(traffic.members().join(QLatin1Char(' '))));
}

void OrderTest::linkThatComesUpIsSpokenBeforeItIsTold()
{
    Operations device;
    device.simulator.setTechnologyProperty("wifi"_s, "Powered"_s, false);
    device.simulator.addService(den, {{"Name"_s, "Den"_s}});
    QVERIFY(device.begin());
    Sent traffic;
    QVERIFY(device.client.call("setWifiPower", true).toBool());
    device.reportState(den, "ready"_s);

    const QStringList sent{"SetProperty"_s, "powerChanged"_s, "speakFromId"_s, "networkConnected"_s};
    QVERIFY2(traffic.isLike(sent), qPrintable(traffic.members().join(QLatin1Char(' '))));
}

void OrderTest::chordIsSpokenBeforeThePowerIsTold()
{
    Operations device;
    QVERIFY(device.begin());
    Sent traffic;
    keys::pressChord(device.daemon.sandbox().keyboard(), keys::wifiOn);

    QVERIFY2(traffic.isLike({"speakFromId"_s, "powerChanged"_s}),
             qPrintable(traffic.members().join(QLatin1Char(' '))));
}

static const Suite<OrderTest> orderTest;
#include "OrderTest.moc"
