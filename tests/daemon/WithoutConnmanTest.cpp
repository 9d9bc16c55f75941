#include "Suite.h"
#include "TestDevice.h"
#include "Text.h"
#include <QTest>

using namespace test_support;

/// Every method of the interface while ConnMan has never been seen: each answers at once, with an ordinary
/// reply of its type, and a failure is told by the error signal that comes before the reply.
class WithoutConnmanTest : public QObject
{
    Q_OBJECT
private slots:
    void everyMethodAnswers_data();
    void everyMethodAnswers();
};

namespace {
const QString noNetwork = "NetworkManager|critical|No such network available: \"x\""_s;
const QString unknown = "error(\"Unknown network: 'x'\")"_s;

QStringList failed(const QString &method, const QString &signal, const QString &result)
{
    return {signal, method + " -> "_s + result};
}
} // namespace

void WithoutConnmanTest::everyMethodAnswers_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("replySignature");
    QTest::addColumn<QStringList>("record");
    QTest::addColumn<QStringList>("log");

    const auto row = [](const char *title, const char *method, const QVariantList &arguments,
                        const char *signature, const QStringList &record, const QStringList &log) {
        QTest::newRow(title) << method << arguments << signature << record << log;
    };
    // Operations and queries on one network: none is there.
    const auto missing = [&row](const char *title, const char *method, const QVariantList &more,
                                const char *signature, const char *result) {
        row(title, method, QVariantList{"x"_s} + more, signature,
            failed(QString::fromLatin1(method), unknown, QString::fromLatin1(result)), {noNetwork});
    };
    missing("connect", "connect", {}, "b", "false");
    missing("disconnect", "disconnect", {}, "b", "false");
    missing("configure, method only", "configure", {"dhcp"_s}, "b", "false");
    missing("configure, addresses", "configure", {"manual"_s, "10.0.0.2"_s, "255.0.0.0"_s, "10.0.0.1"_s}, "b",
            "false");
    missing("configureIPv6", "configureIPv6", {"auto"_s}, "b", "false");
    missing("getAddress", "getAddress", {}, "s", "\"\"");
    missing("getNetmask", "getNetmask", {}, "s", "\"\"");
    missing("getGateway", "getGateway", {}, "s", "\"\"");
    missing("getIPv6Address", "getIPv6Address", {}, "s", "\"\"");
    missing("getPrefix", "getPrefix", {}, "s", "\"\"");
    missing("getConfiguration", "getConfiguration", {}, "a{sv}", "{}");
    missing("getIPv6Configuration", "getIPv6Configuration", {}, "a{sv}", "{}");
    missing("getNameservers", "getNameservers", {}, "as", "[]");
    missing("setNameservers", "setNameservers", {QStringList{"10.0.0.1"_s}}, "b", "false");
    missing("forgetWifi", "forgetWifi", {}, "b", "false");
    missing("registerWifi", "registerWifi", {"secret"_s}, "b", "false");
    row("registerHiddenWifi", "registerHiddenWifi", {"Hidden"_s, "x"_s, "secret"_s}, "b",
        failed("registerHiddenWifi"_s, unknown, "false"_s), {noNetwork});
    row("registerWiFiWpa2Enterprise", "registerWiFiWpa2Enterprise",
        {"me"_s, "x"_s, "secret"_s, "peap"_s, "MSCHAPV2"_s}, "b",
        failed("registerWiFiWpa2Enterprise"_s, unknown, "false"_s), {noNetwork});

    // The whole device's state: nothing, off.
    row("networks", "networks", {}, "a{sv}", {"networks -> {}"_s}, {});
    row("wpsNetworks", "wpsNetworks", {}, "as", {"wpsNetworks -> []"_s}, {});
    row("activeNetworks", "activeNetworks", {}, "as", {"activeNetworks -> []"_s}, {});
    row("setWifiPower on", "setWifiPower", {true}, "b", {"setWifiPower -> false"_s}, {});
    row("setWifiPower off", "setWifiPower", {false}, "b", {"setWifiPower -> false"_s}, {});
    row("getWifiPower", "getWifiPower", {}, "b", {"getWifiPower -> false"_s}, {});
    row("checkWifiTechnology", "checkWifiTechnology", {}, "b", {"checkWifiTechnology -> false"_s}, {});
    row("checkBluetoothTechnology", "checkBluetoothTechnology", {}, "b",
        {"checkBluetoothTechnology -> false"_s}, {});

    // What does not need ConnMan works.
    row("getHwAddress", "getHwAddress", {"lo"_s}, "s", {"getHwAddress -> \"00:00:00:00:00:00\""_s}, {});
    row("getHwAddress of no interface", "getHwAddress", {"x"_s}, "s", {"getHwAddress -> \"\""_s},
        {noNetwork});
    row("getWifiRegion", "getWifiRegion", {}, "s", {"getWifiRegion -> \"\""_s}, {});
    row("setWifiRegion", "setWifiRegion", {"DE"_s}, "b",
        {"regionChanged(\"DE\", false)"_s, "setWifiRegion -> true"_s}, {});
    row("getLockRegion", "getLockRegion", {}, "b", {"getLockRegion -> false"_s}, {});
    row("setLockRegion", "setLockRegion", {true}, "b",
        {"regionChanged(\"\", true)"_s, "setLockRegion -> true"_s}, {});
    row("getHostName", "getHostName", {}, "s", {"getHostName -> \"printer\""_s}, {});
    row("setHostName", "setHostName", {"box"_s}, "b", {"setHostName -> true"_s}, {});

    // Arguments are checked before anything is looked up.
    row("empty argument of connect", "connect", {QString()}, "b",
        failed("connect"_s, "error(\"Can't connect with an empty network-name.\")"_s, "false"_s),
        {"NetworkManager|critical|Can't connect with an empty network-name."_s});
    row("registerWifiWps, name only", "registerWifiWps", {QString()}, "b", {"registerWifiWps -> false"_s},
        {"NetworkManager|critical|Connect to any WPS network isn't supported."_s});
    row("registerWifiWps, with PIN", "registerWifiWps", {QString(), "12345670"_s}, "b",
        {"registerWifiWps -> false"_s},
        {"NetworkManager|critical|Connect to any WPS network isn't supported."_s});
}

void WithoutConnmanTest::everyMethodAnswers()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, replySignature);
    QFETCH(QStringList, record);
    QFETCH(QStringList, log);
    LonelyDaemon device;
    QVERIFY(device.start());
    const QDBusMessage reply = device.client.callForReply(method, arguments);
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(reply.signature(), replySignature);
    QCOMPARE(device.client.record(), record);
    QVERIFY(device.daemon.stop());
    QCOMPARE(device.daemon.log().lines(), log);
    for (const QString &line : log) {
        QVERIFY(device.daemon.log().takeProblem(line));
    }
}

static const Suite<WithoutConnmanTest> withoutConnmanTest;
#include "WithoutConnmanTest.moc"
