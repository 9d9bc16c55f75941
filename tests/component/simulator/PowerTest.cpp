// Technologies switched off and on, and the cable: what comes, goes and gets connected by itself.

#include "DeviceFixture.h"
#include "Suite.h"
#include "Text.h"
#include <QDBusVariant>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString powered = "Powered"_s;
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
    return m_client->technology(technology, "SetProperty"_s,
                                {powered, QVariant::fromValue(QDBusVariant(value))});
}

void PowerTest::poweringWifiOffTakesItsServicesAway()
{
    m_simulator->addNetwork({{"ssid"_s, "Home"_s}, {"security"_s, "none"_s}});
    QVERIFY(!m_client->service(openId, "Connect"_s).isError);
    m_client->clear();
    QCOMPARE(setPowered(wifi, false).text(), QString());
    QVERIFY(m_client->waitForSignal("wifi PropertyChanged(\"Powered\", <false>)"_s));
    QVERIFY(m_client->waitForSignal("ServicesChanged(@a(oa{sv}) [], [objectpath"_s));
    QCOMPARE(m_simulator->services(), QStringList());
    QCOMPARE(m_client->signalLines("wifi PropertyChanged(\"Connected\", <false>)"_s).size(), 1);
}

void PowerTest::poweringWifiOnScansAndConnectsFavourites()
{
    m_simulator->addNetwork({{"ssid"_s, "Home"_s}, {"security"_s, "none"_s}});
    QVERIFY(!m_client->service(openId, "Connect"_s).isError);
    setPowered(wifi, false);
    m_client->clear();
    QCOMPARE(setPowered(wifi, true).text(), QString());
    QVERIFY(m_client->waitForSignal("wifi PropertyChanged(\"Powered\", <true>)"_s));
    QVERIFY(m_client->waitForState(openId, "online"_s));
}

void PowerTest::powerThatIsSoAlreadyIsAnError_data()
{
    QTest::addColumn<bool>("on");
    QTest::addColumn<QString>("error");
    QTest::newRow("on") << true << "net.connman.Error.AlreadyEnabled: Already enabled"_s;
    QTest::newRow("off") << false << "net.connman.Error.AlreadyDisabled: Already disabled"_s;
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
    QCOMPARE(setPowered(wifi, 1).text(), "net.connman.Error.InvalidArguments: Invalid arguments"_s);
}

void PowerTest::unknownTechnologyPropertyIsRefused()
{
    QCOMPARE(m_client->technology(wifi, "SetProperty"_s, {"Nope"_s, QVariant::fromValue(QDBusVariant(true))})
                 .text(),
             "net.connman.Error.InvalidProperty: Invalid property"_s);
}

void PowerTest::pluggedCableGetsOnline()
{
    m_simulator->setCable(true, {{"address"_s, "10.1.2.3"_s},
                                 {"netmask"_s, "255.255.0.0"_s},
                                 {"gateway"_s, "10.1.0.1"_s},
                                 {"ipv6"_s, "fd00::3"_s}});
    QVERIFY(m_client->waitForState(cableId, "online"_s));
    QCOMPARE(m_client->property(cableId, "IPv4"_s),
             "{\"Address\": <\"10.1.2.3\">, \"Gateway\": <\"10.1.0.1\">, \"Method\": <\"dhcp\">, "
             "\"Netmask\": <\"255.255.0.0\">}"_s);
    QCOMPARE(m_client->property(cableId, "IPv6"_s),
             "{\"Address\": <\"fd00::3\">, \"Method\": <\"auto\">, \"PrefixLength\": <byte 0x40>, "
             "\"Privacy\": <\"disabled\">}"_s);
    QCOMPARE(m_client->property(cableId, "Nameservers"_s), "[\"10.1.0.1\"]"_s);
}

void PowerTest::pluggedCableGetsOnlineBesideStrangers()
{
    m_simulator->addServices(0, 3);
    m_simulator->addNetwork({{"ssid"_s, "Home"_s}});
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, "online"_s));
}

void PowerTest::pluggedCableGetsConnectedBesideWifi()
{
    m_simulator->addNetwork({{"ssid"_s, "Home"_s}, {"security"_s, "none"_s}});
    QVERIFY(!m_client->service(openId, "Connect"_s).isError);
    QVERIFY(m_client->waitForState(openId, "online"_s));
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, "ready"_s));
}

void PowerTest::unpluggedCableGoes()
{
    m_simulator->setTiming("announce"_s, 0);
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, "online"_s));
    m_client->clear();
    m_simulator->setCable(false);
    QVERIFY(m_client->waitForSignal("ServicesChanged(@a(oa{sv}) [], [objectpath"_s));
    QCOMPARE(m_client->states(cableId).join(QLatin1Char(' ')), "configuration disconnect idle"_s);
}

void PowerTest::cableWithoutDhcpFallsBackToALinkLocalAddress()
{
    m_simulator->setCable(true, {{"dhcp"_s, false}});
    QVERIFY(m_client->waitForState(cableId, "online"_s));
    QCOMPARE(m_client->property(cableId, "IPv4"_s),
             "{\"Address\": <\"169.254.77.50\">, \"Method\": <\"auto\">, \"Netmask\": <\"255.255.0.0\">}"_s);
}

void PowerTest::ethernetConnectIsAnsweredBeforeItsAddressIsThere()
{
    m_simulator->setTiming("autoConnect"_s, -1);
    m_simulator->setTiming("configuration"_s, 60000);
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForSignal(servicesChanged));
    QCOMPARE(m_client->service(cableId, "Connect"_s).text(), QString());
    QCOMPARE(m_client->property(cableId, "State"_s), "\"configuration\""_s);
    QCOMPARE(m_client->service(cableId, "Connect"_s).text(), "net.connman.Error.InProgress: In progress"_s);
}

void PowerTest::onlyTheDefaultConnectionGetsOnline()
{
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, "online"_s));
    m_simulator->addNetwork({{"ssid"_s, "Home"_s}, {"security"_s, "none"_s}});
    QVERIFY(!m_client->service(openId, "Connect"_s).isError);
    QCOMPARE(m_client->property(openId, "State"_s), "\"ready\""_s);
    m_simulator->setCable(false);
    QVERIFY(m_client->waitForState(openId, "online"_s));
}

static const Suite<PowerTest> powerTest;
#include "PowerTest.moc"
