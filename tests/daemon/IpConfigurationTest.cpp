#include "OperationsScene.h"
#include "Suite.h"
#include <QTest>

using namespace scene;
using namespace test_support;

/// configure(), configureIPv6(), setNameservers(), and the queries that read what they set.
class IpConfigurationTest : public QObject
{
    Q_OBJECT
private slots:
    void settingIsWrittenToConnman_data();
    void settingIsWrittenToConnman();
    void badValueIsRefusedBeforeAnythingIsWritten_data();
    void badValueIsRefusedBeforeAnythingIsWritten();
    void refusedWriteIsReported_data();
    void refusedWriteIsReported();
    void refusedNameserversAreOnlyLogged();
    void valueIsReadFromTheSettingsInForce_data();
    void valueIsReadFromTheSettingsInForce();
    void manualSettingsAreReadAsConfigured();
    void ipv6ConfigurationFollowsASilentChangeAndIpv4DoesNot();
};

namespace {
QString writeNameservers(const QString &list)
{
    return callOf(cable, "SetProperty(\"Nameservers.Configuration\", <%1>)"_s.arg(list));
}

QVariantMap leased()
{
    return {{"State"_s, "ready"_s},
            {"IPv4"_s, QVariantMap{{"Method"_s, "dhcp"_s},
                                   {"Address"_s, "10.0.0.5"_s},
                                   {"Netmask"_s, "255.255.0.0"_s},
                                   {"Gateway"_s, "10.0.0.1"_s}}},
            {"IPv4.Configuration"_s, QVariantMap{{"Method"_s, "dhcp"_s}}},
            {"IPv6.Configuration"_s, QVariantMap{{"Method"_s, "manual"_s},
                                                 {"Address"_s, "fd00::5"_s},
                                                 {"PrefixLength"_s, QVariant::fromValue<uchar>(64)}}},
            {"Nameservers"_s, QStringList{"10.0.0.1"_s, "fd00::1"_s}}};
}

const QVariantList manualSetting{"manual"_s, "10.1.2.3"_s, "255.255.255.0"_s, "10.1.2.1"_s};
const QString manualWrite = "{\"Address\": <\"10.1.2.3\">, \"Gateway\": <\"10.1.2.1\">, \"Method\": "
                            "<\"manual\">, \"Netmask\": <\"255.255.255.0\">}"_s;
} // namespace

void IpConfigurationTest::settingIsWrittenToConnman_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QStringList>("writes");
    const QString dhcp = write(cable, "IPv4.Configuration"_s, "{\"Method\": <\"dhcp\">}"_s);
    const QString off = write(cable, "IPv4.Configuration"_s, "{\"Method\": <\"off\">}"_s);
    const QString noServers = writeNameservers("@as []"_s);
    QTest::newRow("dhcp") << "configure"_s << QVariantList{"dhcp"_s} << QStringList{dhcp, noServers};
    QTest::newRow("dhcp, addresses ignored")
        << "configure"_s << QVariantList{"dhcp"_s, "x"_s, "y"_s, "z"_s} << QStringList{dhcp, noServers};
    QTest::newRow("off") << "configure"_s << QVariantList{"off"_s} << QStringList{off};
    QTest::newRow("off, addresses ignored")
        << "configure"_s << QVariantList{"off"_s, "x"_s, "y"_s, "z"_s} << QStringList{off};
    QTest::newRow("manual") << "configure"_s << manualSetting
                            << QStringList{write(cable, "IPv4.Configuration"_s, manualWrite)};
    QTest::newRow("IPv6 auto") << "configureIPv6"_s << QVariantList{"auto"_s}
                               << QStringList{
                                      write(cable, "IPv6.Configuration"_s, "{\"Method\": <\"auto\">}"_s)};
    QTest::newRow("IPv6 off") << "configureIPv6"_s << QVariantList{"off"_s}
                              << QStringList{
                                     write(cable, "IPv6.Configuration"_s, "{\"Method\": <\"off\">}"_s)};
    QTest::newRow("name servers, in order")
        << "setNameservers"_s << QVariantList{QStringList{"10.0.0.9"_s, "fd00::9"_s, "10.0.0.8"_s}}
        << QStringList{writeNameservers("[\"10.0.0.9\", \"fd00::9\", \"10.0.0.8\"]"_s)};
    QTest::newRow("no name servers") << "setNameservers"_s << QVariantList{QStringList()}
                                     << QStringList{noServers};
}

void IpConfigurationTest::settingIsWrittenToConnman()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QStringList, writes);
    Operations device;
    device.simulator.addService(cable, leased());
    QVERIFY(device.begin());

    device.client.callForReply(method, QVariantList{cable} + arguments);
    QCOMPARE(device.client.record(), QStringList(method + " -> true"_s));
    QCOMPARE(device.changes(), writes);
}

void IpConfigurationTest::badValueIsRefusedBeforeAnythingIsWritten_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("logged");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *title, const QString &method, const QVariantList &arguments,
                        const QString &logged, const QString &error) {
        QTest::newRow(title) << method << arguments << logged << error;
    };
    const QString ip = "255.0.0.0"_s;
    row("method in capitals", "configure"_s, {"DHCP"_s}, "Invalid configuration method: \"DHCP\""_s,
        "Invalid parameter, method: 'DHCP'"_s);
    row("manual without addresses", "configure"_s, {"manual"_s}, "Invalid address specified: \"\""_s,
        "Invalid parameter, address: ''"_s);
    row("bad address", "configure"_s, {"manual"_s, "10.0.0"_s + "x"_s, QString(), QString()},
        "Invalid address specified: \"10.0.0x\""_s, "Invalid parameter, address: '10.0.0x'"_s);
    row("empty netmask", "configure"_s, {"manual"_s, ip, QString(), ip}, "Invalid netmask specified: \"\""_s,
        "Invalid parameter, netmask: ''"_s);
    row("bad netmask and gateway", "configure"_s, {"manual"_s, ip, "x"_s, "y"_s},
        "Invalid netmask specified: \"x\""_s, "Invalid parameter, netmask: 'x'"_s);
    row("method with a capital", "configure"_s, {"Off"_s}, "Invalid configuration method: \"Off\""_s,
        "Invalid parameter, method: 'Off'"_s);
    row("IPv6 method with a capital", "configureIPv6"_s, {"Auto"_s},
        "Invalid configuration method for IPv6: \"Auto\""_s, "Invalid parameter, method: 'Auto"_s);
    row("bad gateway", "configure"_s, {"manual"_s, ip, ip, "none"_s}, "Invalid gateway specified: \"none\""_s,
        "Invalid parameter, gateway: 'none'"_s);
    row("IPv6 manual", "configureIPv6"_s, {"manual"_s}, "Invalid configuration method for IPv6: \"manual\""_s,
        "Invalid parameter, method: 'manual"_s);
    row("second name server", "setNameservers"_s, {QStringList{"10.0.0.1"_s, "nowhere"_s, "also"_s}},
        "Invalid nameserver: \"nowhere\""_s, "Invalid parameter, nameserver: 'nowhere'"_s);
}

void IpConfigurationTest::badValueIsRefusedBeforeAnythingIsWritten()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, logged);
    QFETCH(QString, error);
    Operations device;
    device.simulator.addService(cable, leased());
    QVERIFY(device.begin());

    device.client.callForReply(method, QVariantList{cable} + arguments);
    QCOMPARE(device.client.record(), (QStringList{errorSignal(error), method + " -> false"_s}));
    QVERIFY(device.log().takeProblem("NetworkManager|critical|"_s + logged));
    QCOMPARE(device.changes(), QStringList());
}

void IpConfigurationTest::refusedWriteIsReported_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("property");
    QTest::newRow("dhcp") << "configure"_s << QVariantList{"dhcp"_s} << "IPv4.Configuration"_s;
    QTest::newRow("off") << "configure"_s << QVariantList{"off"_s} << "IPv4.Configuration"_s;
    QTest::newRow("manual") << "configure"_s << manualSetting << "IPv4.Configuration"_s;
    QTest::newRow("IPv6 auto") << "configureIPv6"_s << QVariantList{"auto"_s} << "IPv6.Configuration"_s;
}

void IpConfigurationTest::refusedWriteIsReported()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, property);
    Operations device;
    device.simulator.addService(cable, leased());
    QVERIFY(device.begin());
    const Fault refused = device.simulator.injectFault(
        "net.connman.Service"_s, "SetProperty"_s,
        FaultKind::error("net.connman.Error.InvalidArguments"_s, "Invalid arguments"_s));

    device.client.callForReply(method, QVariantList{cable} + arguments);
    const QString error =
        "Unable to configure network '%1' with method '%2'."_s.arg(cable, arguments.constFirst().toString());
    QCOMPARE(device.client.record(), (QStringList{errorSignal(error), method + " -> false"_s}));
    QVERIFY(device.log().takeProblem(
        "ConnmanService.properties|critical|Setting property \"%1\" failed: \"Invalid arguments\""_s.arg(
            property)));
}

void IpConfigurationTest::refusedNameserversAreOnlyLogged()
{
    Operations device;
    device.simulator.addService(cable, leased());
    QVERIFY(device.begin());
    const Fault refused = device.simulator.injectFault(
        "net.connman.Service"_s, "SetProperty"_s,
        FaultKind::error("net.connman.Error.InvalidArguments"_s, "Invalid arguments"_s));

    device.client.call("setNameservers", cable, QStringList{"10.0.0.1"_s});
    QCOMPARE(device.client.record(), QStringList("setNameservers -> false"_s));
    QVERIFY(device.log().takeProblem("ConnmanService.properties|critical|Setting property "
                                     "\"Nameservers.Configuration\" failed: \"Invalid arguments\""_s));
}

void IpConfigurationTest::valueIsReadFromTheSettingsInForce_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("address") << "getAddress"_s << QVariant("10.0.0.5"_s);
    QTest::newRow("netmask") << "getNetmask"_s << QVariant("255.255.0.0"_s);
    QTest::newRow("gateway") << "getGateway"_s << QVariant("10.0.0.1"_s);
    QTest::newRow("IPv6 address") << "getIPv6Address"_s << QVariant("fd00::5"_s);
    QTest::newRow("prefix length, as text") << "getPrefix"_s << QVariant("64"_s);
    QTest::newRow("name servers") << "getNameservers"_s << QVariant(QStringList{"10.0.0.1"_s, "fd00::1"_s});
    QTest::newRow("IPv4") << "getConfiguration"_s << leased().value("IPv4"_s);
    QTest::newRow("IPv6") << "getIPv6Configuration"_s
                          << QVariant(QVariantMap{{"Method"_s, "manual"_s},
                                                  {"Address"_s, "fd00::5"_s},
                                                  {"PrefixLength"_s, 64}});
}

void IpConfigurationTest::valueIsReadFromTheSettingsInForce()
{
    QFETCH(QString, method);
    QFETCH(QVariant, value);
    Operations device;
    device.simulator.addService(cable, leased());
    QVERIFY(device.begin());

    QCOMPARE(device.client.call(method.toLatin1().constData(), cable), value);
    // The IPv6 configuration alone is read anew.
    QCOMPARE(device.simulator.calls(), method == "getIPv6Configuration"_s
                                           ? QStringList(callOf(cable, "GetProperties()"_s))
                                           : QStringList());
}

void IpConfigurationTest::manualSettingsAreReadAsConfigured()
{
    const QVariantMap configured{{"Method"_s, "manual"_s}, {"Address"_s, "10.9.9.9"_s}};
    QVariantMap properties = leased();
    properties["IPv4"_s] = QVariantMap{{"Method"_s, "manual"_s}, {"Address"_s, "10.0.0.5"_s}};
    properties["IPv4.Configuration"_s] = configured;
    Operations device;
    device.simulator.addService(cable, properties);
    QVERIFY(device.begin());

    QCOMPARE(device.client.call("getConfiguration", cable).toMap(), configured);
    QCOMPARE(device.client.call("getAddress", cable).toString(), "10.9.9.9"_s);
}

void IpConfigurationTest::ipv6ConfigurationFollowsASilentChangeAndIpv4DoesNot()
{
    constexpr bool silently = true;
    Operations device;
    device.simulator.addService(cable, leased());
    QVERIFY(device.begin());
    device.simulator.setServiceProperty(cable, "IPv4"_s, QVariantMap{{"Method"_s, "dhcp"_s}}, silently);
    device.simulator.setServiceProperty(cable, "IPv6.Configuration"_s, QVariantMap{{"Method"_s, "off"_s}},
                                        silently);

    QCOMPARE(device.client.call("getConfiguration", cable).toMap(), leased().value("IPv4"_s).toMap());
    QCOMPARE(device.client.call("getIPv6Configuration", cable).toMap(), (QVariantMap{{"Method"_s, "off"_s}}));
    QCOMPARE(device.client.call("getConfiguration", cable).toMap(), (QVariantMap{{"Method"_s, "dhcp"_s}}));
}

static const Suite<IpConfigurationTest> ipConfigurationTest;
#include "IpConfigurationTest.moc"
