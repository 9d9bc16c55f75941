// What a client may set of a service: accepted, refused, and what follows.

#include "DeviceFixture.h"
#include "Suite.h"
#include <QDBusObjectPath>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString id = QStringLiteral("wifi_020000000200_486f6d65_managed_none");
const QString ipv4Configuration = QStringLiteral("IPv4.Configuration");
const QString ipv6Configuration = QStringLiteral("IPv6.Configuration");
const QString nameserversConfiguration = QStringLiteral("Nameservers.Configuration");
const QString method = QStringLiteral("Method");
const QString address = QStringLiteral("Address");
const QString accepted;
const QString invalidArguments = QStringLiteral("net.connman.Error.InvalidArguments: Invalid arguments");
const QString invalidProperty = QStringLiteral("net.connman.Error.InvalidProperty: Invalid property");
const QString invalidService = QStringLiteral("net.connman.Error.InvalidService: Invalid service");
const QString notSupported = QStringLiteral("net.connman.Error.NotSupported: Not supported");

QVariantMap manualIpv4()
{
    return {{method, QStringLiteral("manual")},
            {address, QStringLiteral("10.0.0.9")},
            {QStringLiteral("Netmask"), QStringLiteral("255.0.0.0")},
            {QStringLiteral("Gateway"), QStringLiteral("10.0.0.1")}};
}

QVariantMap manualIpv6(const QVariant &prefixLength)
{
    return {{method, QStringLiteral("manual")},
            {address, QStringLiteral("fd00::9")},
            {QStringLiteral("PrefixLength"), prefixLength},
            {QStringLiteral("Gateway"), QStringLiteral("fd00::1")}};
}

QVariantMap changed(QVariantMap map, const char *key, const QVariant &value)
{
    map[QString::fromLatin1(key)] = value;
    return map;
}
} // namespace

class SettingsTest : public DeviceFixture
{
    Q_OBJECT

private slots:
    void answers_data();
    void answers();
    void refusedValueChangesNothing();
    void manualIpv4IsShownAndUsed();
    void dhcpGetsItsAddressAnew();
    void configurationDuringAssociationDoesNotCutItShort();
    void ipv4OffLeavesTheServiceConfiguring();
    void manualIpv6IsShownWithPrivacy();
    void onlyAddressesBecomeNameservers();
    void noNameserversGivesThoseOfTheLease();
    void nameserversOfAnIdleServiceAreNotUsed();
    void autoConnectIsToldWhenItChanges();
    void autoConnectOfAStrangerIsRefused();
    void immutableServiceCannotBeConfigured();
    void clearingTheErrorEndsTheFailure();
    void domainsAreUsedWhileConnected();
    void settingsOutliveARestart();

private:
    QString set(const QString &property, const QVariant &value) const
    {
        return m_client->setServiceProperty(id, property, value).text();
    }
    void arrive() override;
    void connectService();
};

void SettingsTest::arrive()
{
    m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")},
                             {QStringLiteral("security"), QStringLiteral("none")},
                             {QStringLiteral("address"), QStringLiteral("192.168.10.77")}});
    QVERIFY(m_client->waitForSignal(id));
}

void SettingsTest::connectService()
{
    const Answer answer = m_client->service(id, QStringLiteral("Connect"));
    QVERIFY2(!answer.isError, qPrintable(answer.error));
    QVERIFY(m_client->waitForState(id, QStringLiteral("online")));
    m_client->clear();
}

void SettingsTest::answers_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("answer");
    const QVariant byte64 = QVariant::fromValue<uchar>(64);
    const QString text = QStringLiteral("x");
    const auto ofMethod = [](const char *name) {
        return QVariant(QVariantMap{{method, QString::fromLatin1(name)}});
    };

    QTest::newRow("IPv4 dhcp") << ipv4Configuration << ofMethod("dhcp") << accepted;
    QTest::newRow("IPv4 off") << ipv4Configuration << ofMethod("off") << accepted;
    QTest::newRow("IPv4 manual") << ipv4Configuration << QVariant(manualIpv4()) << accepted;
    QTest::newRow("IPv4 auto") << ipv4Configuration << ofMethod("auto") << notSupported;
    QTest::newRow("IPv4 fixed") << ipv4Configuration << ofMethod("fixed") << invalidArguments;
    QTest::newRow("IPv4 nonsense") << ipv4Configuration << ofMethod("nonsense") << invalidArguments;
    QTest::newRow("IPv4 no method") << ipv4Configuration << QVariant(QVariantMap()) << invalidArguments;
    QTest::newRow("IPv4 no dictionary") << ipv4Configuration << QVariant(text) << invalidArguments;
    QTest::newRow("IPv4 list") << ipv4Configuration << QVariant(QStringList{text}) << invalidArguments;
    QTest::newRow("IPv4 of IPv6") << ipv4Configuration
                                  << QVariant(changed(manualIpv4(), "Address", QStringLiteral("fe80::1")))
                                  << invalidArguments;
    QTest::newRow("IPv4 bad netmask")
        << ipv4Configuration << QVariant(changed(manualIpv4(), "Netmask", text)) << invalidArguments;
    QTest::newRow("IPv4 bad gateway")
        << ipv4Configuration << QVariant(changed(manualIpv4(), "Gateway", text)) << invalidArguments;
    QTest::newRow("IPv4 address of wrong type")
        << ipv4Configuration << QVariant(changed(manualIpv4(), "Address", 5)) << invalidArguments;

    QTest::newRow("IPv6 auto") << ipv6Configuration << ofMethod("auto") << accepted;
    QTest::newRow("IPv6 off") << ipv6Configuration << ofMethod("off") << accepted;
    QTest::newRow("IPv6 manual") << ipv6Configuration << QVariant(manualIpv6(byte64)) << accepted;
    QTest::newRow("IPv6 dhcp") << ipv6Configuration << ofMethod("dhcp") << notSupported;
    QTest::newRow("IPv6 prefix of wrong type")
        << ipv6Configuration << QVariant(manualIpv6(64)) << invalidArguments;
    QTest::newRow("IPv6 prefix too long")
        << ipv6Configuration << QVariant(manualIpv6(QVariant::fromValue<uchar>(129))) << invalidArguments;
    QTest::newRow("IPv6 of IPv4") << ipv6Configuration
                                  << QVariant(
                                         changed(manualIpv6(byte64), "Address", QStringLiteral("10.0.0.1")))
                                  << invalidArguments;

    QTest::newRow("nameservers") << nameserversConfiguration << QVariant(QStringList{text}) << accepted;
    QTest::newRow("no nameservers") << nameserversConfiguration << QVariant(QStringList()) << accepted;
    QTest::newRow("nameservers as text") << nameserversConfiguration << QVariant(text) << invalidArguments;
    QTest::newRow("timeservers") << QStringLiteral("Timeservers.Configuration") << QVariant(QStringList{text})
                                 << accepted;
    QTest::newRow("domains as a number")
        << QStringLiteral("Domains.Configuration") << QVariant(1) << invalidArguments;
    QTest::newRow("proxy") << QStringLiteral("Proxy.Configuration") << ofMethod("direct") << accepted;
    QTest::newRow("proxy nonsense") << QStringLiteral("Proxy.Configuration") << ofMethod("x")
                                    << invalidArguments;
    QTest::newRow("mDNS") << QStringLiteral("mDNS.Configuration") << QVariant(true) << accepted;
    QTest::newRow("mDNS as text") << QStringLiteral("mDNS.Configuration") << QVariant(text)
                                  << invalidArguments;
    QTest::newRow("AutoConnect as text")
        << QStringLiteral("AutoConnect") << QVariant(text) << invalidArguments;
    QTest::newRow("read-only") << QStringLiteral("State") << QVariant(text) << invalidProperty;
    QTest::newRow("unknown") << QStringLiteral("Nope") << QVariant(text) << invalidProperty;
}

void SettingsTest::answers()
{
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    QFETCH(QString, answer);
    QCOMPARE(set(property, value), answer);
}

void SettingsTest::refusedValueChangesNothing()
{
    QCOMPARE(set(ipv4Configuration, changed(manualIpv4(), "Gateway", QStringLiteral("x"))), invalidArguments);
    QCOMPARE(m_client->property(id, ipv4Configuration), QStringLiteral("{\"Method\": <\"dhcp\">}"));
}

void SettingsTest::manualIpv4IsShownAndUsed()
{
    connectService();
    QCOMPARE(set(ipv4Configuration, manualIpv4()), accepted);
    const QString shown = QStringLiteral("{\"Address\": <\"10.0.0.9\">, \"Gateway\": <\"10.0.0.1\">, "
                                         "\"Method\": <\"manual\">, \"Netmask\": <\"255.0.0.0\">}");
    QCOMPARE(m_client->property(id, ipv4Configuration), shown);
    QCOMPARE(m_client->property(id, QStringLiteral("IPv4")), shown);
    QVERIFY(m_client->waitForState(id, QStringLiteral("online")));
    QCOMPARE(m_client->states(id).join(QLatin1Char(' ')), QStringLiteral("configuration ready online"));
    QCOMPARE(m_client->signalLines(id + QStringLiteral(" PropertyChanged(\"IPv4\"")).first(),
             id + QStringLiteral(" PropertyChanged(\"IPv4\", <@a{sv} {}>)"));
}

void SettingsTest::dhcpGetsItsAddressAnew()
{
    connectService();
    QCOMPARE(set(ipv4Configuration, manualIpv4()), accepted);
    QCOMPARE(set(ipv4Configuration, QVariantMap{{method, QStringLiteral("dhcp")}}), accepted);
    QVERIFY(m_client->waitForSignal(QStringLiteral("\"IPv4\", <{\"Address\": <\"192.168.10.77\">")));
}

void SettingsTest::configurationDuringAssociationDoesNotCutItShort()
{
    m_simulator->setTiming(QStringLiteral("association"), 60000);
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(id, QStringLiteral("Connect"));
    QVERIFY(m_client->waitForState(id, QStringLiteral("association")));
    QCOMPARE(set(ipv4Configuration, manualIpv4()), accepted);
    QCOMPARE(m_client->property(id, QStringLiteral("State")), QStringLiteral("\"association\""));
    QVERIFY(!pending->hasCome());
}

void SettingsTest::ipv4OffLeavesTheServiceConfiguring()
{
    connectService();
    QCOMPARE(set(ipv4Configuration, QVariantMap{{method, QStringLiteral("off")}}), accepted);
    QCOMPARE(m_client->property(id, QStringLiteral("State")), QStringLiteral("\"configuration\""));
    QCOMPARE(m_client->property(id, QStringLiteral("IPv4")), QStringLiteral("@a{sv} {}"));
}

void SettingsTest::manualIpv6IsShownWithPrivacy()
{
    connectService();
    QCOMPARE(set(ipv6Configuration, manualIpv6(QVariant::fromValue<uchar>(64))), accepted);
    const QString shown =
        QStringLiteral("{\"Address\": <\"fd00::9\">, \"Gateway\": <\"fd00::1\">, \"Method\": "
                       "<\"manual\">, \"PrefixLength\": <byte 0x40>, \"Privacy\": <\"disabled\">}");
    QCOMPARE(m_client->property(id, ipv6Configuration), shown);
    QCOMPARE(m_client->property(id, QStringLiteral("IPv6")), shown);
    QCOMPARE(m_client->property(id, QStringLiteral("State")), QStringLiteral("\"online\""));
}

void SettingsTest::onlyAddressesBecomeNameservers()
{
    connectService();
    QCOMPARE(set(nameserversConfiguration, QStringList{QStringLiteral("9.9.9.9"), QStringLiteral("xx"),
                                                       QString(), QStringLiteral("fd00::53")}),
             accepted);
    QCOMPARE(m_client->property(id, nameserversConfiguration), QStringLiteral("[\"9.9.9.9\", \"fd00::53\"]"));
    QCOMPARE(m_client->property(id, QStringLiteral("Nameservers")),
             QStringLiteral("[\"9.9.9.9\", \"fd00::53\"]"));
}

void SettingsTest::noNameserversGivesThoseOfTheLease()
{
    connectService();
    QCOMPARE(set(nameserversConfiguration, QStringList{QStringLiteral("9.9.9.9")}), accepted);
    QCOMPARE(set(nameserversConfiguration, QStringList()), accepted);
    QCOMPARE(m_client->property(id, QStringLiteral("Nameservers")), QStringLiteral("[\"192.168.10.1\"]"));
}

void SettingsTest::nameserversOfAnIdleServiceAreNotUsed()
{
    QCOMPARE(set(nameserversConfiguration, QStringList{QStringLiteral("9.9.9.9")}), accepted);
    QCOMPARE(m_client->property(id, QStringLiteral("Nameservers")), QStringLiteral("@as []"));
}

void SettingsTest::autoConnectIsToldWhenItChanges()
{
    connectService();
    QCOMPARE(set(QStringLiteral("AutoConnect"), true), accepted);
    QCOMPARE(set(QStringLiteral("AutoConnect"), false), accepted);
    QVERIFY(m_client->waitForSignal(QStringLiteral("\"AutoConnect\", <false>")));
    QCOMPARE(m_client->signalLines(QStringLiteral("\"AutoConnect\", <true>")), QStringList());
}

void SettingsTest::autoConnectOfAStrangerIsRefused()
{
    QCOMPARE(set(QStringLiteral("AutoConnect"), true), invalidService);
}

void SettingsTest::immutableServiceCannotBeConfigured()
{
    m_simulator->setServiceProperty(id, QStringLiteral("Immutable"), true);
    QCOMPARE(set(ipv4Configuration, manualIpv4()), notSupported);
    QCOMPARE(set(nameserversConfiguration, QStringList()), notSupported);
    QCOMPARE(set(QStringLiteral("Nope"), 1), invalidProperty);
}

void SettingsTest::clearingTheErrorEndsTheFailure()
{
    m_simulator->setServiceProperty(id, QStringLiteral("Error"), QStringLiteral("connect-failed"));
    m_simulator->setServiceProperty(id, QStringLiteral("State"), QStringLiteral("failure"));
    QCOMPARE(m_client->service(id, QStringLiteral("ClearProperty"), {QStringLiteral("Name")}).text(),
             invalidProperty);
    QCOMPARE(m_client->service(id, QStringLiteral("ClearProperty"), {QStringLiteral("Error")}).text(),
             accepted);
    QCOMPARE(m_client->property(id, QStringLiteral("State")), QStringLiteral("\"idle\""));
    QCOMPARE(m_client->property(id, QStringLiteral("Error")), QString());
}

void SettingsTest::domainsAreUsedWhileConnected()
{
    const QString domains = QStringLiteral("Domains.Configuration");
    QCOMPARE(set(domains, QStringList{QStringLiteral("a.example")}), accepted);
    QCOMPARE(m_client->property(id, QStringLiteral("Domains")), QStringLiteral("@as []"));
    connectService();
    QCOMPARE(set(domains, QStringList{QStringLiteral("b.example")}), accepted);
    QCOMPARE(m_client->property(id, QStringLiteral("Domains")), QStringLiteral("[\"b.example\"]"));
}

void SettingsTest::settingsOutliveARestart()
{
    connectService();
    QCOMPARE(set(ipv4Configuration, manualIpv4()), accepted);
    QCOMPARE(set(QStringLiteral("AutoConnect"), false), accepted);
    m_simulator->restartConnman();
    QTRY_VERIFY(m_client->property(id, ipv4Configuration).contains(QStringLiteral("10.0.0.9")));
    QCOMPARE(m_client->property(id, QStringLiteral("AutoConnect")), QStringLiteral("false"));
}

static const Suite<SettingsTest> suite;
#include "SettingsTest.moc"
