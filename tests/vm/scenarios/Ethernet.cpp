#include "Eventually.h"
#include "Scenarios.h"

#include <QTest>

namespace {

const QString ethernetLed = QStringLiteral("led10");
constexpr int announcementTimeoutMs = 120000;

bool ethernetLedShows(const QString &state)
{
    return eventually([&] { return ledState(ethernetLed) == state; }, announcementTimeoutMs, 20);
}

} // namespace

// All of these spoil the world: the daemon goes on looking at every wired service it has ever met.

void Scenarios::leaseIsAnnounced()
{
    m_world.spoil();
    QVERIFY(lan().plugIn(Lan::Server::Dhcp));

    QTRY_VERIFY_WITH_TIMEOUT(!peers().spoken().isEmpty(), announcementTimeoutMs);

    const QString address = Kernel::addresses(QStringLiteral("eth0")).value(0);
    QVERIFY(address.startsWith(QStringLiteral("10.20.0.")));
    const QString parts = QString(address).replace(QLatin1Char('.'), QLatin1Char(' '));
    QCOMPARE(peers().spoken(), QStringList{QStringLiteral("0: ") + parts});
    QVERIFY(ethernetLedShows(QStringLiteral("on")));
}

void Scenarios::configuredIpv6AddressIsAnnouncedWhenThereIsNoOther()
{
    m_world.spoil();
    QVERIFY(lan().plugIn(Lan::Server::Nobody));
    const QString identifier = connman().find(QStringLiteral("Wired"), QStringLiteral("cable"));
    QVERIFY(
        connman().setProperty(identifier, QStringLiteral("IPv6.Configuration"),
                              QVariantMap{{QStringLiteral("Method"), QStringLiteral("manual")},
                                          {QStringLiteral("Address"), QStringLiteral("fd00:20::7")},
                                          {QStringLiteral("PrefixLength"), QVariant::fromValue(uchar(64))}}));

    QTRY_VERIFY_WITH_TIMEOUT(!peers().spoken().isEmpty(), announcementTimeoutMs);
    QCOMPARE(peers().spoken(), QStringList{QStringLiteral("1: fd00:20double colon7")});
    QVERIFY(ethernetLedShows(QStringLiteral("on")));
}

/// ConnMan tells automatic addresses in "IPv6", the daemon reads "IPv6.Configuration".
void Scenarios::automaticIpv6AddressAloneIsNotAnnounced()
{
    m_world.spoil();
    QVERIFY(lan().plugIn(Lan::Server::Ipv6Router));
    QVERIFY(eventually([] {
        return Kernel::addresses(QStringLiteral("eth0")).value(0).startsWith(QStringLiteral("fd00:20:"));
    }));

    QTRY_VERIFY_WITH_TIMEOUT(!peers().spoken().isEmpty(), announcementTimeoutMs);

    QCOMPARE(peers().spoken(), QStringList{QStringLiteral("8")});
}

void Scenarios::missingAddressIsAnnouncedAfterSixteenLooks()
{
    m_world.spoil();
    QVERIFY(lan().plugIn(Lan::Server::Nobody));

    QTRY_VERIFY_WITH_TIMEOUT(!peers().spoken().isEmpty(), announcementTimeoutMs);

    QCOMPARE(peers().spoken(), QStringList{QStringLiteral("8")});
    QVERIFY(ethernetLedShows(QStringLiteral("blink 500")));
    QVERIFY(ethernetLedShows(QStringLiteral("off")));
}

void Scenarios::pluggingIntoAnotherNetworkAnnouncesItsAddress()
{
    m_world.spoil();
    QVERIFY(lan().plugIn(Lan::Server::Dhcp));
    QTRY_COMPARE_WITH_TIMEOUT(peers().spoken().size(), 1, announcementTimeoutMs);
    QVERIFY(lan().unplug());
    QVERIFY(
        eventually([] { return ledState(ethernetLed) == QStringLiteral("off"); })); // the daemon has seen it

    QVERIFY(lan().plugIn(Lan::Server::OtherDhcp));

    QTRY_COMPARE_WITH_TIMEOUT(peers().spoken().size(), 2, announcementTimeoutMs);
    const QString said = peers().spoken().value(1);
    QVERIFY2(said.startsWith(QStringLiteral("0: 10 21 0 ")), qUtf8Printable(said));
}

void Scenarios::pluggingInAgainAnnouncesAgain()
{
    m_world.spoil();
    QVERIFY(lan().plugIn(Lan::Server::Dhcp));
    QTRY_COMPARE_WITH_TIMEOUT(peers().spoken().size(), 1, announcementTimeoutMs);
    QVERIFY(lan().unplug());
    QVERIFY(
        eventually([] { return ledState(ethernetLed) == QStringLiteral("off"); })); // the daemon has seen it

    QVERIFY(lan().plugIn(Lan::Server::Dhcp));

    QTRY_COMPARE_WITH_TIMEOUT(peers().spoken().size(), 2, announcementTimeoutMs);
    QVERIFY(peers().spoken().value(1).startsWith(QStringLiteral("0: 10 20 0 ")));
}
