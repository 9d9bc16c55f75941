#include "EventWait.h"
#include "Scene.h"
#include <QElapsedTimer>
#include <QTest>

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
    void addressIsSpokenOnce();
    void secondReadyReportSpeaksAgainButOnce();
    void firstServiceOnTheInterfaceIsAsked();
    void readyReportOfAnotherInterfaceStartsNothing();
    void missingAddressIsToldAtTheSixteenthTick();
    void addressAtTheSixteenthTickIsSpokenAfterTheComplaint();
    void readyReportBeginsTheCountAnew();
};

namespace {
const QString ethernetLed = "led10"_s;
/// Logged once a tick while IPv6 has no address.
const QString noIpv6Address = "ConnmanService.properties|critical|Missing property \"Address\""_s;
constexpr int tickMs = 2000;

QVariantMap address(const QString &method, const QString &text)
{
    return {{"Method"_s, method}, {"Address"_s, text}};
}

/// A device with a cable whose service has a link-local address and no IPv6 address.
struct Wired : TestDevice
{
    Wired()
    {
        simulator.addService(scene::cable, {{"AutoConnect"_s, false}});
        setIpv4("169.254.10.20"_s);
        log().tolerate(noIpv6Address);
    }

    void setIpv4(const QString &text)
    {
        simulator.setServiceProperty(scene::cable, "IPv4"_s, address("dhcp"_s, text));
    }
    void setIpv6(const QString &text)
    {
        simulator.setServiceProperty(scene::cable, "IPv6.Configuration"_s, address("auto"_s, text));
    }
    void ready() { reportState(scene::cable, "ready"_s); }
    /// Looks for an address that found none.
    int ticks() { return log().lines().count(noIpv6Address); }
    bool waitForTicks(int count)
    {
        // One after the other: all of them together take longer than a single wait may.
        bool ticking = true;
        for (int tick = 1; tick <= count && ticking; ++tick) {
            ticking = log().waitFor(noIpv6Address, tick);
        }
        return ticking;
    }
    bool waitForSpeech(const QStringList &sentences)
    {
        return waitUntil([&] { return scene::spoken(simulator) == sentences; });
    }
    /// Whether nothing more is said while a tick would have passed.
    bool staysSilent()
    {
        const int said = simulator.speech().size();
        return !waitUntil([&] { return simulator.speech().size() > said; }, tickMs * 3 / 2);
    }
};

QString ipv4Sentence()
{
    return scene::sentence(0, {"192"_s, "168"_s, "1"_s, "7"_s});
}
} // namespace

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
    QVERIFY(device.waitForSpeech({scene::sentence(1, {spoken})}));
    QVERIFY(device.devices().waitForLed(ethernetLed, LedPattern::on()));
}

void EthernetAddressTest::addressThatComesLateIsSpokenThen()
{
    Wired device;
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QVERIFY(device.waitForTicks(2));
    QCOMPARE(scene::spoken(device.simulator), QStringList());
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
    const int ticks = device.ticks();
    QVERIFY(device.staysSilent());
    QCOMPARE(device.ticks(), ticks);
}

void EthernetAddressTest::secondReadyReportSpeaksAgainButOnce()
{
    Wired device;
    device.setIpv4("192.168.1.7"_s);
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QVERIFY(device.waitForSpeech({ipv4Sentence()}));
    device.reportState(scene::cable, "configuration"_s);
    device.ready();
    QVERIFY(device.waitForSpeech({ipv4Sentence(), ipv4Sentence()}));
    QVERIFY(device.staysSilent());
    QCOMPARE(scene::spoken(device.simulator).size(), 2);
}

void EthernetAddressTest::firstServiceOnTheInterfaceIsAsked()
{
    Wired device;
    device.setIpv4("192.168.1.7"_s);
    // Another service, of another interface, with an address of its own.
    device.simulator.addService(scene::home, {{"IPv4"_s, address("dhcp"_s, "10.1.1.1"_s)}});
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
    QVERIFY(device.staysSilent());
    QCOMPARE(device.devices().led(ethernetLed), LedPattern::off());
    QCOMPARE(device.devices().led("led8"_s), LedPattern::off());
}

void EthernetAddressTest::missingAddressIsToldAtTheSixteenthTick()
{
    Wired device;
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QElapsedTimer clock;
    clock.start();
    QVERIFY(device.waitForTicks(15));
    QCOMPARE(scene::spoken(device.simulator), QStringList());
    QVERIFY(device.waitForSpeech({scene::sentence(8)}));
    QVERIFY2(clock.elapsed() > 16 * tickMs * 9 / 10, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(device.devices().waitForLed(ethernetLed, LedPattern::blink(500)));
    QVERIFY(device.waitForTicks(16));
    QVERIFY(device.devices().waitForLed(ethernetLed, LedPattern::off()));
    // The timer is stopped: an address that comes now is not noticed.
    device.setIpv4("192.168.1.7"_s);
    QVERIFY(device.staysSilent());
    QCOMPARE(device.ticks(), 16);
}

void EthernetAddressTest::addressAtTheSixteenthTickIsSpokenAfterTheComplaint()
{
    Wired device;
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QVERIFY(device.waitForTicks(15));
    device.setIpv4("192.168.1.7"_s);
    QVERIFY(device.waitForSpeech({scene::sentence(8), ipv4Sentence()}));
    QVERIFY(device.devices().waitForLed(ethernetLed, LedPattern::on()));
    QVERIFY(device.staysSilent());
}

void EthernetAddressTest::readyReportBeginsTheCountAnew()
{
    Wired device;
    QVERIFY(device.startWithoutRadio());
    device.ready();
    QVERIFY(device.waitForTicks(3));
    device.reportState(scene::cable, "configuration"_s);
    device.ready();
    // Each ready report has its own look at every tick, and all of them count: the eighth tick has the
    // fifteenth and the sixteenth look.
    QVERIFY(device.waitForTicks(3 + 14));
    QCOMPARE(scene::spoken(device.simulator), QStringList());
    QVERIFY(device.waitForSpeech({scene::sentence(8)}));
    QVERIFY(device.waitForTicks(3 + 16));
    QVERIFY(device.staysSilent());
    QCOMPARE(device.ticks(), 3 + 16);
}

QTEST_GUILESS_MAIN(EthernetAddressTest)
#include "EthernetAddressTest.moc"
