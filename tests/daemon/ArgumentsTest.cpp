#include "OperationsScene.h"
#include "Suite.h"
#include <QTest>

using namespace scene;
using namespace test_support;

/// What every operation refuses before it asks ConnMan for anything, and networks that are not there.
class ArgumentsTest : public QObject
{
    Q_OBJECT
private slots:
    void badArgumentIsRefusedBeforeConnmanIsAsked_data();
    void badArgumentIsRefusedBeforeConnmanIsAsked();
    void unknownNetworkIsReportedAfterOneScan_data();
    void unknownNetworkIsReportedAfterOneScan();
    void unknownNetworkToRegisterIsReportedAfterThreeLooks_data();
    void unknownNetworkToRegisterIsReportedAfterThreeLooks();
    void unknownWpsNetworkIsReportedAfterTwoScans();
    void wpsWithoutNetworkIsNotSupported();
};

void ArgumentsTest::badArgumentIsRefusedBeforeConnmanIsAsked_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("logged");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *title, const QString &method, const QVariantList &arguments,
                        const QString &logged, const QString &error) {
        QTest::newRow(title) << method << arguments << "NetworkManager|critical|"_s + logged << error;
    };
    const QString none;
    const QString noNetwork = "Invalid parameter, network: ''"_s;
    const QString connectText = "Can't connect with an empty network-name."_s;
    row("connect", "connect"_s, {none}, connectText, connectText);
    row("disconnect", "disconnect"_s, {none}, "Can't disconnect with an empty network-name."_s, noNetwork);
    row("configure", "configure"_s, {none, "dhcp"_s}, connectText, noNetwork);
    row("configureIPv6", "configureIPv6"_s, {none, "auto"_s}, connectText, noNetwork);
    row("setNameservers", "setNameservers"_s, {none, QStringList()}, connectText, noNetwork);

    const QString noSsid = "Can't register without an SSID."_s;
    const QString ssidError = "Invalid parameter, ssid: ''"_s;
    const QString noPsk = "Can't register without a PSK."_s;
    const QString pskError = "Invalid parameter, psk: ''"_s;
    row("registerWifi, no network", "registerWifi"_s, {none, "secret"_s}, noSsid, ssidError);
    row("registerWifi, no passphrase", "registerWifi"_s, {home, none}, noPsk, pskError);
    row("registerWifi, open word in capitals", "registerWifi"_s, {"wifi_1_managed_NONE"_s, none}, noPsk,
        pskError);
    row("registerWifi, open word not at the end", "registerWifi"_s, {"wifi_none_managed_psk"_s, none}, noPsk,
        pskError);
    row("registerHiddenWifi, no name", "registerHiddenWifi"_s, {none, none, none},
        "Can't register without a name."_s, "Invalid parameter, hiddenName: ''"_s);
    row("registerHiddenWifi, no network", "registerHiddenWifi"_s, {"Den"_s, none, "secret"_s}, noSsid,
        ssidError);
    row("registerHiddenWifi, no passphrase", "registerHiddenWifi"_s, {"Den"_s, home, none}, noPsk, pskError);

    const QString enterprise = "registerWiFiWpa2Enterprise"_s;
    row("enterprise, no identity", enterprise, {none, none, none, none, none},
        "Can't register without a identityname."_s, "Invalid parameter, identityname: ''"_s);
    row("enterprise, neither EAP nor phase", enterprise, {"me"_s, home, "secret"_s, none, none},
        "Can't register without an EAP."_s, "Invalid parameter, EAP: ''"_s);
    row("enterprise, no phase", enterprise, {"me"_s, home, "secret"_s, "peap"_s, none},
        "Can't register without an authentification phase."_s, "Invalid parameter, authPhase: ''"_s);
    row("enterprise, no network", enterprise, {"me"_s, none, "secret"_s, "peap"_s, "MSCHAPV2"_s}, noSsid,
        ssidError);
    row("enterprise, no passphrase", enterprise, {"me"_s, home, none, "peap"_s, "MSCHAPV2"_s}, noPsk,
        pskError);
    QTest::newRow("forgetWifi warns only")
        << "forgetWifi"_s << QVariantList{none} << "NetworkManager|warning|Can't forget an empty SSID."_s
        << ssidError;
}

void ArgumentsTest::badArgumentIsRefusedBeforeConnmanIsAsked()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, logged);
    QFETCH(QString, error);
    Operations device;
    device.daemon.setLoggingRules("NetworkManager.warning=true"_s);
    QVERIFY(device.begin());

    device.client.callForReply(method, arguments);
    QCOMPARE(device.client.record(), (QStringList{errorSignal(error), method + " -> false"_s}));
    QVERIFY(device.log().waitFor(logged));
    device.log().tolerate(logged);
    QCOMPARE(device.simulator.calls(), QStringList());
}

void ArgumentsTest::unknownNetworkIsReportedAfterOneScan_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("result");
    QTest::newRow("connect") << "connect"_s << QVariantList{home} << "false"_s;
    QTest::newRow("disconnect") << "disconnect"_s << QVariantList{home} << "false"_s;
    QTest::newRow("forgetWifi") << "forgetWifi"_s << QVariantList{home} << "false"_s;
    QTest::newRow("configure") << "configure"_s << QVariantList{home, "off"_s} << "false"_s;
    QTest::newRow("configureIPv6") << "configureIPv6"_s << QVariantList{home, "off"_s} << "false"_s;
    QTest::newRow("setNameservers") << "setNameservers"_s << QVariantList{home, QStringList()} << "false"_s;
    // The network comes first, whatever else is wrong.
    QTest::newRow("configure, bad method too") << "configure"_s << QVariantList{home, "x"_s} << "false"_s;
    QTest::newRow("configureIPv6, bad method too")
        << "configureIPv6"_s << QVariantList{home, "x"_s} << "false"_s;
    QTest::newRow("setNameservers, bad server too")
        << "setNameservers"_s << QVariantList{home, QStringList("x"_s)} << "false"_s;
    QTest::newRow("getAddress") << "getAddress"_s << QVariantList{home} << "\"\""_s;
    QTest::newRow("getAddress, empty") << "getAddress"_s << QVariantList{QString()} << "\"\""_s;
    QTest::newRow("getNetmask") << "getNetmask"_s << QVariantList{home} << "\"\""_s;
    QTest::newRow("getGateway") << "getGateway"_s << QVariantList{home} << "\"\""_s;
    QTest::newRow("getIPv6Address") << "getIPv6Address"_s << QVariantList{home} << "\"\""_s;
    QTest::newRow("getPrefix") << "getPrefix"_s << QVariantList{home} << "\"\""_s;
    QTest::newRow("getConfiguration") << "getConfiguration"_s << QVariantList{home} << "{}"_s;
    QTest::newRow("getIPv6Configuration") << "getIPv6Configuration"_s << QVariantList{home} << "{}"_s;
    QTest::newRow("getNameservers") << "getNameservers"_s << QVariantList{home} << "[]"_s;
}

void ArgumentsTest::unknownNetworkIsReportedAfterOneScan()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, result);
    const QString name = arguments.constFirst().toString();
    Operations device;
    QVERIFY(device.begin());

    device.client.callForReply(method, arguments);
    QCOMPARE(device.client.record(), (QStringList{errorSignal("Unknown network: '%1'"_s.arg(name)),
                                                  "%1 -> %2"_s.arg(method, result)}));
    QVERIFY(device.log().takeProblem(noSuchNetwork(name)));
    QCOMPARE(device.changes(), QStringList(scan));
}

void ArgumentsTest::unknownNetworkToRegisterIsReportedAfterThreeLooks_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::newRow("registerWifi") << "registerWifi"_s << QVariantList{home, "secret"_s};
    QTest::newRow("registerHiddenWifi") << "registerHiddenWifi"_s << QVariantList{"Den"_s, home, "secret"_s};
    QTest::newRow("registerWiFiWpa2Enterprise")
        << "registerWiFiWpa2Enterprise"_s << QVariantList{"me"_s, home, "secret"_s, "peap"_s, "MSCHAPV2"_s};
}

// The first look-up's scan, the service check's own, and that of the check's look-up.
void ArgumentsTest::unknownNetworkToRegisterIsReportedAfterThreeLooks()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    Operations device;
    QVERIFY(device.begin());

    device.client.callForReply(method, arguments);
    QCOMPARE(device.client.record(),
             (QStringList{errorSignal("Unknown network: '%1'"_s.arg(home)), method + " -> false"_s}));
    QVERIFY(device.log().takeProblem(noSuchNetwork(home)));
    QCOMPARE(device.changes(), (QStringList{scan, scan, scan}));
    QCOMPARE(device.daemon.sandbox().connmanFiles(), QStringList());
}

void ArgumentsTest::unknownWpsNetworkIsReportedAfterTwoScans()
{
    Operations device;
    QVERIFY(device.begin());

    device.client.call("registerWifiWps", home, "12345670"_s);
    QCOMPARE(device.client.record(),
             (QStringList{errorSignal("Unknown network."_s), "registerWifiWps -> false"_s}));
    QVERIFY(device.log().takeProblem("NetworkManager|critical|Unknown network."_s));
    QCOMPARE(device.changes(), (QStringList{scan, scan}));
}

void ArgumentsTest::wpsWithoutNetworkIsNotSupported()
{
    Operations device;
    QVERIFY(device.begin());

    device.client.call("registerWifiWps", QString());
    QCOMPARE(device.client.record(), QStringList("registerWifiWps -> false"_s));
    QVERIFY(
        device.log().takeProblem("NetworkManager|critical|Connect to any WPS network isn't supported."_s));
    QCOMPARE(device.simulator.calls(), QStringList());
}

static const Suite<ArgumentsTest> argumentsTest;
#include "ArgumentsTest.moc"
