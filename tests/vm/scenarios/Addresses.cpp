#include "Eventually.h"
#include "Scenarios.h"

#include <algorithm>
#include <QTest>

namespace {

const QString wlan = QStringLiteral("wlan0");
const QString fixedAddress = QStringLiteral("10.11.1.200");
const QString netmask = QStringLiteral("255.255.255.0");
const QString gateway = QStringLiteral("10.11.1.1");

bool eventuallyHas(const QString &address)
{
    return eventually([&] { return Kernel::addresses(wlan).contains(address); });
}

bool hasIpv6()
{
    const QStringList addresses = Kernel::addresses(wlan);
    return std::any_of(addresses.begin(), addresses.end(), [](const QString &address) {
        return address.startsWith(QStringLiteral("fd00:11:1:"));
    });
}

} // namespace

void Scenarios::staticAddressIsUsedOnTheAir()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());

    QVERIFY(does(QStringLiteral("configure"),
                 {identifier, QStringLiteral("manual"), fixedAddress, netmask, gateway}));

    QVERIFY(eventuallyHas(fixedAddress));
    QVERIFY(eventually([&] { return air().reaches(fixedAddress); }));
    QCOMPARE(connman().ipv4(identifier, QStringLiteral("Method")), QStringLiteral("manual"));
    QCOMPARE(daemon().call(QStringLiteral("getAddress"), {identifier}).toString(), fixedAddress);
    QCOMPARE(daemon().call(QStringLiteral("getGateway"), {identifier}).toString(), gateway);
}

void Scenarios::automaticAddressComesBack()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QString leased = connman().ipv4(identifier, QStringLiteral("Address"));
    QVERIFY(does(QStringLiteral("configure"),
                 {identifier, QStringLiteral("manual"), fixedAddress, netmask, gateway}));
    QVERIFY(eventuallyHas(fixedAddress));

    QVERIFY(does(QStringLiteral("configure"), {identifier, QStringLiteral("dhcp")}));

    QVERIFY(eventuallyHas(leased));
    QVERIFY(!Kernel::addresses(wlan).contains(fixedAddress));
    QVERIFY(eventually([&] { return air().reaches(leased); }));
}

void Scenarios::addressIsRemovedWhenIpv4IsOff()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QString leased = connman().ipv4(identifier, QStringLiteral("Address"));
    QVERIFY(eventuallyHas(leased));

    QVERIFY(does(QStringLiteral("configure"), {identifier, QStringLiteral("off")}));

    QVERIFY(eventually([&] { return !Kernel::addresses(wlan).contains(leased); }));
}

void Scenarios::nameServersReachConnman()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QStringList servers{QStringLiteral("10.11.1.53"), QStringLiteral("10.11.1.54")};
    const QString configured = QStringLiteral("Nameservers.Configuration");

    QVERIFY(does(QStringLiteral("setNameservers"), {identifier, servers}));

    QCOMPARE(connman().service(identifier).value(configured).toStringList(), servers);
    QVERIFY(eventually([&] {
        return daemon().call(QStringLiteral("getNameservers"), {identifier}).toStringList() == servers;
    }));

    QVERIFY(does(QStringLiteral("setNameservers"), {identifier, QStringList()}));
    QCOMPARE(connman().service(identifier).value(configured).toStringList(), QStringList());
}

void Scenarios::ipv6CanBeSwitchedOffAndOn()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    QVERIFY(eventually(hasIpv6));

    QVERIFY(does(QStringLiteral("configureIPv6"), {identifier, QStringLiteral("off")}));
    QVERIFY(eventually([] { return !hasIpv6(); }));

    QVERIFY(does(QStringLiteral("configureIPv6"), {identifier, QStringLiteral("auto")}));
    QVERIFY(eventually(hasIpv6));
}

void Scenarios::invalidAddressesAreRefused()
{
    const QString identifier = network(QStringLiteral("Atelier"));

    QVERIFY(!does(QStringLiteral("configure"),
                  {identifier, QStringLiteral("manual"), fixedAddress, QStringLiteral("wide"), gateway}));
    QVERIFY(!does(QStringLiteral("configure"), {identifier, QStringLiteral("DHCP")}));
    QVERIFY(!does(QStringLiteral("configureIPv6"), {identifier, QStringLiteral("manual")}));
    QVERIFY(!does(QStringLiteral("setNameservers"), {identifier, QStringList{QStringLiteral("here")}}));

    const QStringList told{QStringLiteral("error(Invalid parameter, netmask: 'wide')"),
                           QStringLiteral("error(Invalid parameter, method: 'DHCP')"),
                           QStringLiteral("error(Invalid parameter, method: 'manual)"),
                           QStringLiteral("error(Invalid parameter, nameserver: 'here')")};
    QTRY_COMPARE(daemon().received(), told);
}
