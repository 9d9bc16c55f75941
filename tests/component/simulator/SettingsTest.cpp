// What a client may set of a service: accepted, refused, and what follows.

#include "DeviceFixture.h"
#include "Suite.h"
#include "Text.h"
#include <QDBusObjectPath>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString id = "wifi_020000000200_486f6d65_managed_none"_s;
const QString ipv4Configuration = "IPv4.Configuration"_s;
const QString ipv6Configuration = "IPv6.Configuration"_s;
const QString nameserversConfiguration = "Nameservers.Configuration"_s;
const QString method = "Method"_s;
const QString address = "Address"_s;
const QString accepted;
const QString invalidProperty = "net.connman.Error.InvalidProperty: Invalid property"_s;
const QString invalidService = "net.connman.Error.InvalidService: Invalid service"_s;
const QString notSupported = "net.connman.Error.NotSupported: Not supported"_s;

QVariantMap manualIpv4()
{
    return {{method, "manual"_s},
            {address, "10.0.0.9"_s},
            {"Netmask"_s, "255.0.0.0"_s},
            {"Gateway"_s, "10.0.0.1"_s}};
}

QVariantMap manualIpv6(const QVariant &prefixLength)
{
    return {{method, "manual"_s},
            {address, "fd00::9"_s},
            {"PrefixLength"_s, prefixLength},
            {"Gateway"_s, "fd00::1"_s}};
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
    m_simulator->addNetwork(
        {{"ssid"_s, "Home"_s}, {"security"_s, "none"_s}, {"address"_s, "192.168.10.77"_s}});
    QVERIFY(m_client->waitForSignal(id));
}

void SettingsTest::connectService()
{
    const Answer answer = m_client->service(id, "Connect"_s);
    QVERIFY2(!answer.isError, qPrintable(answer.error));
    QVERIFY(m_client->waitForState(id, "online"_s));
    m_client->clear();
}

void SettingsTest::answers_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("answer");
    const QVariant byte64 = QVariant::fromValue<uchar>(64);
    const QString text = "x"_s;
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
                                  << QVariant(changed(manualIpv4(), "Address", "fe80::1"_s))
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
                                  << QVariant(changed(manualIpv6(byte64), "Address", "10.0.0.1"_s))
                                  << invalidArguments;

    QTest::newRow("nameservers") << nameserversConfiguration << QVariant(QStringList{text}) << accepted;
    QTest::newRow("no nameservers") << nameserversConfiguration << QVariant(QStringList()) << accepted;
    QTest::newRow("nameservers as text") << nameserversConfiguration << QVariant(text) << invalidArguments;
    QTest::newRow("timeservers") << "Timeservers.Configuration"_s << QVariant(QStringList{text}) << accepted;
    QTest::newRow("domains as a number") << "Domains.Configuration"_s << QVariant(1) << invalidArguments;
    QTest::newRow("proxy") << "Proxy.Configuration"_s << ofMethod("direct") << accepted;
    QTest::newRow("proxy nonsense") << "Proxy.Configuration"_s << ofMethod("x") << invalidArguments;
    QTest::newRow("mDNS") << "mDNS.Configuration"_s << QVariant(true) << accepted;
    QTest::newRow("mDNS as text") << "mDNS.Configuration"_s << QVariant(text) << invalidArguments;
    QTest::newRow("AutoConnect as text") << "AutoConnect"_s << QVariant(text) << invalidArguments;
    QTest::newRow("read-only") << "State"_s << QVariant(text) << invalidProperty;
    QTest::newRow("unknown") << "Nope"_s << QVariant(text) << invalidProperty;
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
    QCOMPARE(set(ipv4Configuration, changed(manualIpv4(), "Gateway", "x"_s)), invalidArguments);
    QCOMPARE(m_client->property(id, ipv4Configuration), "{\"Method\": <\"dhcp\">}"_s);
}

void SettingsTest::manualIpv4IsShownAndUsed()
{
    connectService();
    QCOMPARE(set(ipv4Configuration, manualIpv4()), accepted);
    const QString shown = "{\"Address\": <\"10.0.0.9\">, \"Gateway\": <\"10.0.0.1\">, "
                          "\"Method\": <\"manual\">, \"Netmask\": <\"255.0.0.0\">}"_s;
    QCOMPARE(m_client->property(id, ipv4Configuration), shown);
    QCOMPARE(m_client->property(id, "IPv4"_s), shown);
    QVERIFY(m_client->waitForState(id, "online"_s));
    QCOMPARE(m_client->states(id).join(QLatin1Char(' ')), "configuration ready online"_s);
    QCOMPARE(m_client->signalLines(id + " PropertyChanged(\"IPv4\""_s).first(),
             id + " PropertyChanged(\"IPv4\", <@a{sv} {}>)"_s);
}

void SettingsTest::dhcpGetsItsAddressAnew()
{
    connectService();
    QCOMPARE(set(ipv4Configuration, manualIpv4()), accepted);
    QCOMPARE(set(ipv4Configuration, QVariantMap{{method, "dhcp"_s}}), accepted);
    QVERIFY(m_client->waitForSignal("\"IPv4\", <{\"Address\": <\"192.168.10.77\">"_s));
}

void SettingsTest::configurationDuringAssociationDoesNotCutItShort()
{
    m_simulator->setTiming("association"_s, 60000);
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(id, "Connect"_s);
    QVERIFY(m_client->waitForState(id, "association"_s));
    QCOMPARE(set(ipv4Configuration, manualIpv4()), accepted);
    QCOMPARE(m_client->property(id, "State"_s), "\"association\""_s);
    QVERIFY(!pending->hasCome());
}

void SettingsTest::ipv4OffLeavesTheServiceConfiguring()
{
    connectService();
    QCOMPARE(set(ipv4Configuration, QVariantMap{{method, "off"_s}}), accepted);
    QCOMPARE(m_client->property(id, "State"_s), "\"configuration\""_s);
    QCOMPARE(m_client->property(id, "IPv4"_s), "@a{sv} {}"_s);
}

void SettingsTest::manualIpv6IsShownWithPrivacy()
{
    connectService();
    QCOMPARE(set(ipv6Configuration, manualIpv6(QVariant::fromValue<uchar>(64))), accepted);
    const QString shown = "{\"Address\": <\"fd00::9\">, \"Gateway\": <\"fd00::1\">, \"Method\": "
                          "<\"manual\">, \"PrefixLength\": <byte 0x40>, \"Privacy\": <\"disabled\">}"_s;
    QCOMPARE(m_client->property(id, ipv6Configuration), shown);
    QCOMPARE(m_client->property(id, "IPv6"_s), shown);
    QCOMPARE(m_client->property(id, "State"_s), "\"online\""_s);
}

void SettingsTest::onlyAddressesBecomeNameservers()
{
    connectService();
    QCOMPARE(set(nameserversConfiguration, QStringList{"9.9.9.9"_s, "xx"_s, QString(), "fd00::53"_s}),
             accepted);
    QCOMPARE(m_client->property(id, nameserversConfiguration), "[\"9.9.9.9\", \"fd00::53\"]"_s);
    QCOMPARE(m_client->property(id, "Nameservers"_s), "[\"9.9.9.9\", \"fd00::53\"]"_s);
}

void SettingsTest::noNameserversGivesThoseOfTheLease()
{
    connectService();
    QCOMPARE(set(nameserversConfiguration, QStringList{"9.9.9.9"_s}), accepted);
    QCOMPARE(set(nameserversConfiguration, QStringList()), accepted);
    QCOMPARE(m_client->property(id, "Nameservers"_s), "[\"192.168.10.1\"]"_s);
}

void SettingsTest::nameserversOfAnIdleServiceAreNotUsed()
{
    QCOMPARE(set(nameserversConfiguration, QStringList{"9.9.9.9"_s}), accepted);
    QCOMPARE(m_client->property(id, "Nameservers"_s), "@as []"_s);
}

void SettingsTest::autoConnectIsToldWhenItChanges()
{
    connectService();
    QCOMPARE(set("AutoConnect"_s, true), accepted);
    QCOMPARE(set("AutoConnect"_s, false), accepted);
    QVERIFY(m_client->waitForSignal("\"AutoConnect\", <false>"_s));
    QCOMPARE(m_client->signalLines("\"AutoConnect\", <true>"_s), QStringList());
}

void SettingsTest::autoConnectOfAStrangerIsRefused()
{
    QCOMPARE(set("AutoConnect"_s, true), invalidService);
}

void SettingsTest::immutableServiceCannotBeConfigured()
{
    m_simulator->setServiceProperty(id, "Immutable"_s, true);
    QCOMPARE(set(ipv4Configuration, manualIpv4()), notSupported);
    QCOMPARE(set(nameserversConfiguration, QStringList()), notSupported);
    QCOMPARE(set("Nope"_s, 1), invalidProperty);
}

void SettingsTest::domainsAreUsedWhileConnected()
{
    const QString domains = "Domains.Configuration"_s;
    QCOMPARE(set(domains, QStringList{"a.example"_s}), accepted);
    QCOMPARE(m_client->property(id, "Domains"_s), "@as []"_s);
    connectService();
    QCOMPARE(set(domains, QStringList{"b.example"_s}), accepted);
    QCOMPARE(m_client->property(id, "Domains"_s), "[\"b.example\"]"_s);
}

void SettingsTest::settingsOutliveARestart()
{
    connectService();
    QCOMPARE(set(ipv4Configuration, manualIpv4()), accepted);
    QCOMPARE(set("AutoConnect"_s, false), accepted);
    m_simulator->restartConnman();
    QTRY_VERIFY(m_client->property(id, ipv4Configuration).contains("10.0.0.9"_s));
    QCOMPARE(m_client->property(id, "AutoConnect"_s), "false"_s);
}

static const Suite<SettingsTest> settingsTest;
#include "SettingsTest.moc"
