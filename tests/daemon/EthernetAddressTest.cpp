#include "EthernetScene.h"
#include "Suite.h"
#include <QElapsedTimer>
#include <QTest>

using namespace scene;
using namespace test_support;

/// The address of the cable's network, spoken once it is known: looked for every two seconds after "eth0" is
/// ready.
class EthernetAddressTest : public QObject
{
    Q_OBJECT
private slots:
    void ipv4AddressIsSpokenAtTheFirstTick();
    void ipv6AddressIsSpokenWhereThereIsNoIpv4_data();
    void ipv6AddressIsSpokenWhereThereIsNoIpv4();
    void addressThatComesLateIsSpokenThen();
    void ipv4AddressIsSpokenPartByPart_data();
    void ipv4AddressIsSpokenPartByPart();
    void addressIsSpokenOnce();
    void serviceThatVanishedBeforeTheTickIsStillAsked();
    void secondReadyReportSpeaksAgainButOnce();
    void firstServiceOnTheInterfaceIsAsked();
    void readyReportOfAnotherInterfaceStartsNothing();
};

void EthernetAddressTest::ipv4AddressIsSpokenAtTheFirstTick()
{
    Wired device;
    device.setIpv4("192.168.1.7"_s);
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(device.devices().led(ethernetLed), LedPattern::off());
    QVERIFY(device.waitForSpeech({ipv4Sentence()}));
    QVERIFY2(clock.elapsed() > tickMs * 9 / 10, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(device.devices().waitForLed(ethernetLed, LedPattern::on()));
}

void EthernetAddressTest::ipv6AddressIsSpokenWhereThereIsNoIpv4_data()
{
    QTest::addColumn<QString>("ipv4");
    QTest::addColumn<QString>("ipv6");
    QTest::addColumn<QString>("spoken");
    QTest::newRow("no IPv4") << ""
                             << "fe80::1:2"
                             << "fe80double colon1:2";
    QTest::newRow("link-local IPv4") << "169.254.10.20"
                                     << "2001:db8::7"
                                     << "2001:db8double colon7";
    QTest::newRow("separator twice") << "169.254.1.1"
                                     << "1::2::3"
                                     << "1double colon2double colon3";
    QTest::newRow("nothing left out") << "169.254.1.1"
                                      << "1:2:3:4:5:6:7:8"
                                      << "1:2:3:4:5:6:7:8";
}

void EthernetAddressTest::ipv6AddressIsSpokenWhereThereIsNoIpv4()
{
    QFETCH(QString, ipv4);
    QFETCH(QString, ipv6);
    QFETCH(QString, spoken);
    Wired device;
    device.setIpv4(ipv4);
    device.setIpv6(ipv6);
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QVERIFY(device.waitForSpeech({sentence(1, {spoken})}));
    QVERIFY(device.devices().waitForLed(ethernetLed, LedPattern::on()));
}

void EthernetAddressTest::addressThatComesLateIsSpokenThen()
{
    Wired device;
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QVERIFY(device.waitForTicks(2));
    QCOMPARE(spoken(device.simulator), QStringList());
    device.setIpv4("192.168.1.7"_s);
    QVERIFY(device.waitForSpeech({ipv4Sentence()}));
    QVERIFY(device.devices().waitForLed(ethernetLed, LedPattern::on()));
}

void EthernetAddressTest::addressIsSpokenOnce()
{
    Wired device;
    device.setIpv4("192.168.1.7"_s);
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QVERIFY(device.waitForSpeech({ipv4Sentence()}));
    // IPv6 was looked at beside it, for the last time.
    QVERIFY(device.waitForTicks(1));
    QVERIFY(device.staysSilent());
    QCOMPARE(device.ticks(), 1);
}

void EthernetAddressTest::ipv4AddressIsSpokenPartByPart_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("link-local's numbers later on") << "10.169.254.7";
    QTest::newRow("empty part") << "10..0.5";
}

void EthernetAddressTest::ipv4AddressIsSpokenPartByPart()
{
    QFETCH(QString, address);
    Wired device;
    device.setIpv4(address);
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QVERIFY(device.waitForSpeech({sentence(0, address.split(QLatin1Char('.')))}));
}

void EthernetAddressTest::serviceThatVanishedBeforeTheTickIsStillAsked()
{
    Wired device;
    device.setIpv4("192.168.1.7"_s);
    QVERIFY(device.startWithoutRadio());
    device.ready();
    device.simulator.removeService(cable);
    QVERIFY(device.waitForSpeech({ipv4Sentence()}));
    QVERIFY(device.devices().waitForLed(ethernetLed, LedPattern::on()));
}

void EthernetAddressTest::secondReadyReportSpeaksAgainButOnce()
{
    Wired device;
    device.setIpv4("192.168.1.7"_s);
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QVERIFY(device.waitForSpeech({ipv4Sentence()}));
    device.reportState(cable, "configuration"_s);
    device.ready();
    QVERIFY(device.waitForSpeech({ipv4Sentence(), ipv4Sentence()}));
    QVERIFY(device.staysSilent());
    QCOMPARE(spoken(device.simulator).size(), 2);
}

void EthernetAddressTest::firstServiceOnTheInterfaceIsAsked()
{
    Wired device;
    device.setIpv4("192.168.1.7"_s);
    // Another service, of another interface, with an address of its own.
    device.simulator.addService(home, {{"IPv4"_s, address("dhcp"_s, "10.1.1.1"_s)}});
    QVERIFY(device.startWithoutRadio());
    device.simulator.clearCalls();
    device.ready();
    QVERIFY(device.waitForSpeech({ipv4Sentence()}));
    // It is found in what is known; there is no scan for it.
    QCOMPARE(device.simulator.callsStartingWith("/net/connman/technology/wifi"_s), QStringList());
}

void EthernetAddressTest::readyReportOfAnotherInterfaceStartsNothing()
{
    Wired device;
    device.simulator.addService("ethernet_020000000101_cable"_s,
                                {{"AutoConnect"_s, false},
                                 {"Ethernet"_s, QVariantMap{{"Interface"_s, "eth1"_s}}},
                                 {"IPv4"_s, address("dhcp"_s, "192.168.1.8"_s)}});
    device.daemon.setLoggingRules("NetworkManager.warning=true"_s);
    QVERIFY(device.startWithoutRadio());
    device.reportState("ethernet_020000000101_cable"_s, "ready"_s);
    const QStringList warnings = device.log().lines().filter("Unknown interface changed state: \"eth1\""_s);
    QCOMPARE(warnings.size(), 2); // idle, when it was first seen, then ready
    QVERIFY(warnings.constLast().startsWith("NetworkManager|warning|"_s));
    QVERIFY2(warnings.constFirst().contains("Idle"_s), qPrintable(warnings.constFirst()));
    QVERIFY2(warnings.constLast().contains("Ready"_s), qPrintable(warnings.constLast()));
    QVERIFY(device.staysSilent());
    QCOMPARE(device.devices().led(ethernetLed), LedPattern::off());
    QCOMPARE(device.devices().led("led8"_s), LedPattern::off());
}

static const Suite<EthernetAddressTest> ethernetAddressTest;
#include "EthernetAddressTest.moc"
