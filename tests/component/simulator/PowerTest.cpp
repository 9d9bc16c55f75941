// Technologies switched off and on, and the cable: what comes, goes and gets connected by itself.

#include "DeviceFixture.h"
#include "Suite.h"
#include <QDBusVariant>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString wifi = QStringLiteral("wifi");
const QString cableId = QStringLiteral("ethernet_020000000100_cable");
const QString homeId = QStringLiteral("wifi_020000000200_486f6d65_managed_none");
const QString servicesChanged = QStringLiteral("ServicesChanged");
const QString powered = QStringLiteral("Powered");
} // namespace

class PowerTest : public DeviceFixture
{
    Q_OBJECT

private slots:
    void poweringWifiOffTakesItsServicesAway();
    void poweringWifiOnScansAndConnectsFavourites();
    void powerThatIsSoAlreadyIsAnError_data();
    void powerThatIsSoAlreadyIsAnError();
    void powerNeedsABoolean();
    void unknownTechnologyPropertyIsRefused();
    void pluggedCableGetsOnline();
    void pluggedCableGetsOnlineBesideStrangers();
    void pluggedCableGetsConnectedBesideWifi();
    void unpluggedCableGoes();
    void cableWithoutDhcpFallsBackToALinkLocalAddress();
    void ethernetConnectIsAnsweredBeforeItsAddressIsThere();
    void onlyTheDefaultConnectionGetsOnline();

private:
    Answer setPowered(const QString &technology, const QVariant &value) const;
};

Answer PowerTest::setPowered(const QString &technology, const QVariant &value) const
{
    return m_client->technology(technology, QStringLiteral("SetProperty"),
                                {powered, QVariant::fromValue(QDBusVariant(value))});
}

void PowerTest::poweringWifiOffTakesItsServicesAway()
{
    m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")},
                             {QStringLiteral("security"), QStringLiteral("none")}});
    QVERIFY(!m_client->service(homeId, QStringLiteral("Connect")).isError);
    m_client->clear();
    QCOMPARE(setPowered(wifi, false).text(), QString());
    QVERIFY(m_client->waitForSignal(QStringLiteral("wifi PropertyChanged(\"Powered\", <false>)")));
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged(@a(oa{sv}) [], [objectpath")));
    QCOMPARE(m_simulator->services(), QStringList());
    QCOMPARE(m_client->signalLines(QStringLiteral("wifi PropertyChanged(\"Connected\", <false>)")).size(), 1);
}

void PowerTest::poweringWifiOnScansAndConnectsFavourites()
{
    m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")},
                             {QStringLiteral("security"), QStringLiteral("none")}});
    QVERIFY(!m_client->service(homeId, QStringLiteral("Connect")).isError);
    setPowered(wifi, false);
    m_client->clear();
    QCOMPARE(setPowered(wifi, true).text(), QString());
    QVERIFY(m_client->waitForSignal(QStringLiteral("wifi PropertyChanged(\"Powered\", <true>)")));
    QVERIFY(m_client->waitForState(homeId, QStringLiteral("online")));
}

void PowerTest::powerThatIsSoAlreadyIsAnError_data()
{
    QTest::addColumn<bool>("on");
    QTest::addColumn<QString>("error");
    QTest::newRow("on") << true << QStringLiteral("net.connman.Error.AlreadyEnabled: Already enabled");
    QTest::newRow("off") << false << QStringLiteral("net.connman.Error.AlreadyDisabled: Already disabled");
}

void PowerTest::powerThatIsSoAlreadyIsAnError()
{
    QFETCH(bool, on);
    QFETCH(QString, error);
    m_simulator->setTechnologyProperty(wifi, powered, on);
    QCOMPARE(setPowered(wifi, on).text(), error);
}

void PowerTest::powerNeedsABoolean()
{
    QCOMPARE(setPowered(wifi, 1).text(),
             QStringLiteral("net.connman.Error.InvalidArguments: Invalid arguments"));
}

void PowerTest::unknownTechnologyPropertyIsRefused()
{
    QCOMPARE(m_client
                 ->technology(wifi, QStringLiteral("SetProperty"),
                              {QStringLiteral("Nope"), QVariant::fromValue(QDBusVariant(true))})
                 .text(),
             QStringLiteral("net.connman.Error.InvalidProperty: Invalid property"));
}

void PowerTest::pluggedCableGetsOnline()
{
    m_simulator->setCable(true, {{QStringLiteral("address"), QStringLiteral("10.1.2.3")},
                                 {QStringLiteral("netmask"), QStringLiteral("255.255.0.0")},
                                 {QStringLiteral("gateway"), QStringLiteral("10.1.0.1")},
                                 {QStringLiteral("ipv6"), QStringLiteral("fd00::3")}});
    QVERIFY(m_client->waitForState(cableId, QStringLiteral("online")));
    QCOMPARE(
        m_client->property(cableId, QStringLiteral("IPv4")),
        QStringLiteral("{\"Address\": <\"10.1.2.3\">, \"Gateway\": <\"10.1.0.1\">, \"Method\": <\"dhcp\">, "
                       "\"Netmask\": <\"255.255.0.0\">}"));
    QCOMPARE(
        m_client->property(cableId, QStringLiteral("IPv6")),
        QStringLiteral("{\"Address\": <\"fd00::3\">, \"Method\": <\"auto\">, \"PrefixLength\": <byte 0x40>, "
                       "\"Privacy\": <\"disabled\">}"));
    QCOMPARE(m_client->property(cableId, QStringLiteral("Nameservers")), QStringLiteral("[\"10.1.0.1\"]"));
}

void PowerTest::pluggedCableGetsOnlineBesideStrangers()
{
    m_simulator->addServices(0, 3);
    m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")}});
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, QStringLiteral("online")));
}

void PowerTest::pluggedCableGetsConnectedBesideWifi()
{
    m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")},
                             {QStringLiteral("security"), QStringLiteral("none")}});
    QVERIFY(!m_client->service(homeId, QStringLiteral("Connect")).isError);
    QVERIFY(m_client->waitForState(homeId, QStringLiteral("online")));
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, QStringLiteral("ready")));
}

void PowerTest::unpluggedCableGoes()
{
    m_simulator->setTiming(QStringLiteral("announce"), 0);
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, QStringLiteral("online")));
    m_client->clear();
    m_simulator->setCable(false);
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged(@a(oa{sv}) [], [objectpath")));
    QCOMPARE(m_client->states(cableId).join(QLatin1Char(' ')),
             QStringLiteral("configuration disconnect idle"));
}

void PowerTest::cableWithoutDhcpFallsBackToALinkLocalAddress()
{
    m_simulator->setCable(true, {{QStringLiteral("dhcp"), false}});
    QVERIFY(m_client->waitForState(cableId, QStringLiteral("online")));
    QCOMPARE(
        m_client->property(cableId, QStringLiteral("IPv4")),
        QStringLiteral(
            "{\"Address\": <\"169.254.77.50\">, \"Method\": <\"auto\">, \"Netmask\": <\"255.255.0.0\">}"));
}

void PowerTest::ethernetConnectIsAnsweredBeforeItsAddressIsThere()
{
    m_simulator->setTiming(QStringLiteral("autoConnect"), -1);
    m_simulator->setTiming(QStringLiteral("configuration"), 60000);
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForSignal(servicesChanged));
    QCOMPARE(m_client->service(cableId, QStringLiteral("Connect")).text(), QString());
    QCOMPARE(m_client->property(cableId, QStringLiteral("State")), QStringLiteral("\"configuration\""));
    QCOMPARE(m_client->service(cableId, QStringLiteral("Connect")).text(),
             QStringLiteral("net.connman.Error.InProgress: In progress"));
}

void PowerTest::onlyTheDefaultConnectionGetsOnline()
{
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, QStringLiteral("online")));
    m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")},
                             {QStringLiteral("security"), QStringLiteral("none")}});
    QVERIFY(!m_client->service(homeId, QStringLiteral("Connect")).isError);
    QCOMPARE(m_client->property(homeId, QStringLiteral("State")), QStringLiteral("\"ready\""));
    m_simulator->setCable(false);
    QVERIFY(m_client->waitForState(homeId, QStringLiteral("online")));
}

static const Suite<PowerTest> suite;
#include "PowerTest.moc"
