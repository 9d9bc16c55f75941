#include "Device.h"
#include "EventWait.h"
#include "Kernel.h"
#include "Scenarios.h"
#include "Text.h"

#include <QTest>

using test_support::eventually;
using test_support::LedPattern;

namespace {

const QString ethernetLed = "led10"_s;
constexpr int announcementTimeoutMs = 120000;

bool ethernetLedShows(const LedPattern &pattern)
{
    return eventually([&] { return Device::led(ethernetLed) == pattern; }, announcementTimeoutMs, 20);
}

} // namespace

// All of these spoil the world: the daemon goes on looking at every wired service it has ever met.

void Scenarios::leaseIsAnnounced()
{
    m_world.spoil();
    QVERIFY(lan().plugIn(Lan::Server::Dhcp));

    QTRY_VERIFY_WITH_TIMEOUT(!speech().sentences().isEmpty(), announcementTimeoutMs);

    const QString address = Kernel::addresses("eth0"_s).value(0);
    QVERIFY(address.startsWith("10.20.0."_s));
    const QString parts = QString(address).replace(QLatin1Char('.'), QLatin1Char(' '));
    QCOMPARE(speech().sentences(), QStringList{"0: "_s + parts});
    QVERIFY(ethernetLedShows(LedPattern::on()));
}

void Scenarios::configuredIpv6AddressIsAnnouncedWhenThereIsNoOther()
{
    m_world.spoil();
    QVERIFY(lan().plugIn(Lan::Server::Nobody));
    const QString identifier = connman().find("Wired"_s, "cable"_s);
    QVERIFY(connman().setProperty(identifier, "IPv6.Configuration"_s,
                                  QVariantMap{{"Method"_s, "manual"_s},
                                              {"Address"_s, "fd00:20::7"_s},
                                              {"PrefixLength"_s, QVariant::fromValue(uchar(64))}}));

    QTRY_VERIFY_WITH_TIMEOUT(!speech().sentences().isEmpty(), announcementTimeoutMs);
    QCOMPARE(speech().sentences(), QStringList{"1: fd00:20double colon7"_s});
    QVERIFY(ethernetLedShows(LedPattern::on()));
}

/// ConnMan tells automatic addresses in "IPv6", the daemon reads "IPv6.Configuration".
void Scenarios::automaticIpv6AddressAloneIsNotAnnounced()
{
    m_world.spoil();
    QVERIFY(lan().plugIn(Lan::Server::Ipv6Router));
    QVERIFY(eventually([] { return Kernel::addresses("eth0"_s).value(0).startsWith("fd00:20:"_s); }));

    QTRY_VERIFY_WITH_TIMEOUT(!speech().sentences().isEmpty(), announcementTimeoutMs);

    QCOMPARE(speech().sentences(), QStringList{"8"_s});
}

void Scenarios::missingAddressIsAnnouncedAfterSixteenLooks()
{
    m_world.spoil();
    QVERIFY(lan().plugIn(Lan::Server::Nobody));

    QTRY_VERIFY_WITH_TIMEOUT(!speech().sentences().isEmpty(), announcementTimeoutMs);

    QCOMPARE(speech().sentences(), QStringList{"8"_s});
    QVERIFY(ethernetLedShows(LedPattern::blink(500)));
    QVERIFY(ethernetLedShows(LedPattern::off()));
}

void Scenarios::pluggingIntoAnotherNetworkAnnouncesItsAddress()
{
    m_world.spoil();
    QVERIFY(lan().plugIn(Lan::Server::Dhcp));
    QTRY_COMPARE_WITH_TIMEOUT(speech().sentences().size(), 1, announcementTimeoutMs);
    QVERIFY(lan().unplug());
    QVERIFY(
        eventually([] { return Device::led(ethernetLed) == LedPattern::off(); })); // the daemon has seen it

    QVERIFY(lan().plugIn(Lan::Server::OtherDhcp));

    QTRY_COMPARE_WITH_TIMEOUT(speech().sentences().size(), 2, announcementTimeoutMs);
    const QString said = speech().sentences().value(1);
    QVERIFY2(said.startsWith("0: 10 21 0 "_s), qUtf8Printable(said));
}

void Scenarios::pluggingInAgainAnnouncesAgain()
{
    m_world.spoil();
    QVERIFY(lan().plugIn(Lan::Server::Dhcp));
    QTRY_COMPARE_WITH_TIMEOUT(speech().sentences().size(), 1, announcementTimeoutMs);
    QVERIFY(lan().unplug());
    QVERIFY(
        eventually([] { return Device::led(ethernetLed) == LedPattern::off(); })); // the daemon has seen it

    QVERIFY(lan().plugIn(Lan::Server::Dhcp));

    QTRY_COMPARE_WITH_TIMEOUT(speech().sentences().size(), 2, announcementTimeoutMs);
    QVERIFY(speech().sentences().value(1).startsWith("0: 10 20 0 "_s));
}
