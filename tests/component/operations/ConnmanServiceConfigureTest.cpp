#include "ServiceFixture.h"
#include "Suite.h"
#include "Text.h"

#include <functional>
#include <QHostAddress>
#include <QTest>

using test_support::Fault;
using test_support::FaultKind;
using Configuration = ConnmanService::Configuration;
using Addresses = QList<QHostAddress>;
using Operation = std::function<bool(ConnmanService &)>;

namespace {

const QHostAddress noAddress;

QHostAddress address(const char *text)
{
    return QHostAddress(QString::fromLatin1(text));
}

} // namespace

Q_DECLARE_METATYPE(Configuration)
Q_DECLARE_METATYPE(Addresses)
Q_DECLARE_METATYPE(Operation)

/// Configuring a service: what each operation writes.
class ConnmanServiceConfigureTest : public ServiceFixture
{
    Q_OBJECT

private slots:
    void configurationsHaveTheirNumbers();
    void methodIsConfigured_data();
    void methodIsConfigured();
    void dhcpMakesBothWritesAndNeedsBoth_data();
    void dhcpMakesBothWritesAndNeedsBoth();
    void unknownConfigurationIsRefused_data();
    void unknownConfigurationIsRefused();
    void manualAddressesAreSentAsText();
    void manualReturnsWhatConnmanSays();
    void manualAddressesOfDifferentProtocolsAreRefused_data();
    void manualAddressesOfDifferentProtocolsAreRefused();
    void manualAddressesOfOtherProtocolsAreRefused_data();
    void manualAddressesOfOtherProtocolsAreRefused();
    void ipv6IsSwitched_data();
    void ipv6IsSwitched();
    void nameserversAreSentAsTextInOrder_data();
    void nameserversAreSentAsTextInOrder();
    void autoConnectIsSwitched_data();
    void autoConnectIsSwitched();
    void operationsReturnWhatConnmanSays_data();
    void operationsReturnWhatConnmanSays();
};

void ConnmanServiceConfigureTest::configurationsHaveTheirNumbers()
{
    QCOMPARE(static_cast<int>(Configuration::Off), 0);
    QCOMPARE(static_cast<int>(Configuration::Manual), 1);
    QCOMPARE(static_cast<int>(Configuration::Dhcp), 2);
}

void ConnmanServiceConfigureTest::methodIsConfigured_data()
{
    QTest::addColumn<Configuration>("configuration");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("off") << Configuration::Off
                         << QStringList({setProperty("IPv4.Configuration", "{\"Method\": <\"off\">}"),
                                         getProperties()});
    QTest::newRow("manual") << Configuration::Manual
                            << QStringList({setProperty("IPv4.Configuration",
                                                        "{\"Address\": <\"192.168.1.5\">, \"Gateway\": "
                                                        "<\"192.168.1.1\">, \"Method\": <\"manual\">, "
                                                        "\"Netmask\": <\"255.255.255.0\">}"),
                                            getProperties()});
    QTest::newRow("DHCP") << Configuration::Dhcp
                          << QStringList({setProperty("IPv4.Configuration", "{\"Method\": <\"dhcp\">}"),
                                          getProperties(), setProperty("Nameservers.Configuration", "@as []"),
                                          getProperties()});
}

void ConnmanServiceConfigureTest::methodIsConfigured()
{
    QFETCH(Configuration, configuration);
    QFETCH(QStringList, expected);

    QVERIFY(service().configure(configuration, address("192.168.1.5"), address("255.255.255.0"),
                                address("192.168.1.1")));
    QCOMPARE(calls(), expected);
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceConfigureTest::dhcpMakesBothWritesAndNeedsBoth_data()
{
    QTest::addColumn<bool>("methodTaken");
    QTest::addColumn<bool>("nameserversTaken");

    QTest::newRow("both taken") << true << true;
    QTest::newRow("method refused") << false << true;
    QTest::newRow("name servers refused") << true << false;
    QTest::newRow("both refused") << false << false;
}

void ConnmanServiceConfigureTest::dhcpMakesBothWritesAndNeedsBoth()
{
    QFETCH(bool, methodTaken);
    QFETCH(bool, nameserversTaken);
    const FaultKind refused = connmanError("Failed", "Input/output error");
    const Fault method = fault("SetProperty", methodTaken ? FaultKind::reply({}) : refused);
    const Fault nameservers = fault("SetProperty", nameserversTaken ? FaultKind::reply({}) : refused);

    QCOMPARE(service().configure(Configuration::Dhcp, noAddress, noAddress, noAddress),
             methodTaken && nameserversTaken);
    QCOMPARE(calls(),
             QStringList({setProperty("IPv4.Configuration", "{\"Method\": <\"dhcp\">}"), getProperties(),
                          setProperty("Nameservers.Configuration", "@as []"), getProperties()}));
    QCOMPARE(complaints().size(), (methodTaken ? 0 : 1) + (nameserversTaken ? 0 : 1));
}

void ConnmanServiceConfigureTest::unknownConfigurationIsRefused_data()
{
    QTest::addColumn<int>("number");
    for (const int number : {3, 4, -1}) {
        QTest::addRow("%d", number) << number;
    }
}

void ConnmanServiceConfigureTest::unknownConfigurationIsRefused()
{
    QFETCH(int, number);

    QVERIFY(!service().configure(static_cast<Configuration>(number), address("192.168.1.5"),
                                 address("255.255.255.0"), address("192.168.1.1")));
    QCOMPARE(complaints(), QStringList(serviceLine("Invalid configuration value: %1"_s.arg(number))));
    QCOMPARE(calls(), QStringList());
}

void ConnmanServiceConfigureTest::manualAddressesAreSentAsText()
{
    QVERIFY(service().configureManual(address("10.1.2.3"), address("255.255.0.0"), address("10.1.0.1")));

    QCOMPARE(calls(), QStringList({setProperty("IPv4.Configuration",
                                               "{\"Address\": <\"10.1.2.3\">, \"Gateway\": <\"10.1.0.1\">, "
                                               "\"Method\": <\"manual\">, \"Netmask\": <\"255.255.0.0\">}"),
                                   getProperties()}));
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceConfigureTest::manualReturnsWhatConnmanSays()
{
    const Fault refused = fault("SetProperty", connmanError("InvalidArguments", "Invalid arguments"));

    QVERIFY(!service().configureManual(address("10.1.2.3"), address("255.0.255.0"), address("10.1.0.1")));
    QCOMPARE(complaints(), QStringList(propertiesLine(
                               "Setting property \"IPv4.Configuration\" failed: \"Invalid arguments\""_s)));
}

void ConnmanServiceConfigureTest::manualAddressesOfDifferentProtocolsAreRefused_data()
{
    QTest::addColumn<Addresses>("addresses");
    QTest::addColumn<QString>("printed");

    const QHostAddress v4 = address("10.0.0.5");
    const QHostAddress v6 = address("fd00::5");
    const QString mismatch = "Missmatched protocol types in configureManual() %1 != %2 || %1 != %3"_s;
    const QString ipv4 = "QAbstractSocket::IPv4Protocol"_s;
    const QString ipv6 = "QAbstractSocket::IPv6Protocol"_s;
    const QString unknown = "QAbstractSocket::UnknownNetworkLayerProtocol"_s;
    const QString any = "QAbstractSocket::AnyIPProtocol"_s;

    QTest::newRow("gateway is IPv6") << Addresses{v4, v4, v6} << mismatch.arg(ipv4, ipv4, ipv6);
    QTest::newRow("netmask is IPv6") << Addresses{v4, v6, v4} << mismatch.arg(ipv4, ipv6, ipv4);
    QTest::newRow("address is IPv6") << Addresses{v6, v4, v4} << mismatch.arg(ipv6, ipv4, ipv4);
    QTest::newRow("only address is IPv4") << Addresses{v4, v6, v6} << mismatch.arg(ipv4, ipv6, ipv6);
    QTest::newRow("no gateway") << Addresses{v4, v4, noAddress} << mismatch.arg(ipv4, ipv4, unknown);
    QTest::newRow("no address") << Addresses{noAddress, v4, v4} << mismatch.arg(unknown, ipv4, ipv4);
    QTest::newRow("any address") << Addresses{QHostAddress(QHostAddress::Any), v4, v6}
                                 << mismatch.arg(any, ipv4, ipv6);
}

void ConnmanServiceConfigureTest::manualAddressesOfDifferentProtocolsAreRefused()
{
    QFETCH(Addresses, addresses);
    QFETCH(QString, printed);

    QVERIFY(!service().configureManual(addresses.at(0), addresses.at(1), addresses.at(2)));
    QCOMPARE(complaints(), QStringList(propertiesLine(printed)));
    QCOMPARE(calls(), QStringList());
}

void ConnmanServiceConfigureTest::manualAddressesOfOtherProtocolsAreRefused_data()
{
    QTest::addColumn<Addresses>("addresses");
    QTest::addColumn<QString>("protocol");

    const QHostAddress any(QHostAddress::Any);
    QTest::newRow("IPv6") << Addresses{address("fd00::5"), address("ffff::"), address("fd00::1")}
                          << "QAbstractSocket::IPv6Protocol"_s;
    QTest::newRow("none") << Addresses{noAddress, noAddress, noAddress}
                          << "QAbstractSocket::UnknownNetworkLayerProtocol"_s;
    QTest::newRow("any") << Addresses{any, any, any} << "QAbstractSocket::AnyIPProtocol"_s;
}

void ConnmanServiceConfigureTest::manualAddressesOfOtherProtocolsAreRefused()
{
    QFETCH(Addresses, addresses);
    QFETCH(QString, protocol);

    QVERIFY(!service().configure(Configuration::Manual, addresses.at(0), addresses.at(1), addresses.at(2)));
    QCOMPARE(complaints(), QStringList(serviceLine("Unsupported protocol: "_s + protocol)));
    QCOMPARE(calls(), QStringList());
}

void ConnmanServiceConfigureTest::ipv6IsSwitched_data()
{
    QTest::addColumn<bool>("enable");
    QTest::addColumn<QByteArray>("sent");

    QTest::newRow("on") << true << QByteArray("{\"Method\": <\"auto\">}");
    QTest::newRow("off") << false << QByteArray("{\"Method\": <\"off\">}");
}

void ConnmanServiceConfigureTest::ipv6IsSwitched()
{
    QFETCH(bool, enable);
    QFETCH(QByteArray, sent);

    QVERIFY(service().configureIpv6(enable));
    QCOMPARE(calls(), QStringList({setProperty("IPv6.Configuration", sent.constData()), getProperties()}));
}

void ConnmanServiceConfigureTest::nameserversAreSentAsTextInOrder_data()
{
    QTest::addColumn<Addresses>("servers");
    QTest::addColumn<QByteArray>("sent");

    QTest::newRow("one") << Addresses{address("9.9.9.9")} << QByteArray("[\"9.9.9.9\"]");
    QTest::newRow("several") << Addresses{address("9.9.9.9"), address("1.1.1.1"), address("fd00::35")}
                             << QByteArray("[\"9.9.9.9\", \"1.1.1.1\", \"fd00::35\"]");
    QTest::newRow("none") << Addresses() << QByteArray("@as []");
}

void ConnmanServiceConfigureTest::nameserversAreSentAsTextInOrder()
{
    QFETCH(Addresses, servers);
    QFETCH(QByteArray, sent);

    QVERIFY(service().setNameservers(servers));
    QCOMPARE(calls(),
             QStringList({setProperty("Nameservers.Configuration", sent.constData()), getProperties()}));
}

void ConnmanServiceConfigureTest::autoConnectIsSwitched_data()
{
    QTest::addColumn<bool>("enable");
    QTest::newRow("on") << true;
    QTest::newRow("off") << false;
}

void ConnmanServiceConfigureTest::autoConnectIsSwitched()
{
    QFETCH(bool, enable);

    QVERIFY(service().setAutoConnect(enable));
    QCOMPARE(calls(), QStringList({setProperty("AutoConnect", enable ? "true" : "false"), getProperties()}));
    QCOMPARE(service().getAutoConnect(), enable);
}

void ConnmanServiceConfigureTest::operationsReturnWhatConnmanSays_data()
{
    QTest::addColumn<Operation>("operation");

    QTest::newRow("off") << Operation([](ConnmanService &each) {
        return each.configure(Configuration::Off, noAddress, noAddress, noAddress);
    });
    QTest::newRow("IPv6") << Operation([](ConnmanService &each) { return each.configureIpv6(true); });
    QTest::newRow("name servers") << Operation([](ConnmanService &each) { return each.setNameservers({}); });
    QTest::newRow("auto-connect") << Operation(
        [](ConnmanService &each) { return each.setAutoConnect(true); });
}

void ConnmanServiceConfigureTest::operationsReturnWhatConnmanSays()
{
    QFETCH(Operation, operation);
    const Fault refused = fault("SetProperty", connmanError("NotSupported", "Not supported"));

    QVERIFY(!operation(service()));
    QCOMPARE(complaints().size(), 1);
    QVERIFY(complaints().constFirst().endsWith("failed: \"Not supported\""_s));
}

static const Suite<ConnmanServiceConfigureTest> connmanServiceConfigureTest;
#include "ConnmanServiceConfigureTest.moc"
