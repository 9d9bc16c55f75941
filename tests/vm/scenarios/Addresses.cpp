#include "EventWait.h"
#include "Kernel.h"
#include "Scenarios.h"
#include "Text.h"

#include <algorithm>
#include <QTest>

using test_support::eventually;

namespace {

const QString wlan = "wlan0"_s;
const QString fixedAddress = "10.11.1.200"_s;
const QString netmask = "255.255.255.0"_s;
const QString gateway = "10.11.1.1"_s;

bool eventuallyHas(const QString &address)
{
    return eventually([&] { return Kernel::addresses(wlan).contains(address); });
}

bool hasIpv6()
{
    const QStringList addresses = Kernel::addresses(wlan);
    return std::any_of(addresses.begin(), addresses.end(),
                       [](const QString &address) { return address.startsWith("fd00:11:1:"_s); });
}

} // namespace

void Scenarios::staticAddressIsUsedOnTheAir()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());

    QVERIFY(does("configure", identifier, "manual"_s, fixedAddress, netmask, gateway));

    QVERIFY(eventuallyHas(fixedAddress));
    QVERIFY(eventually([&] { return air().reaches(fixedAddress); }));
    QCOMPARE(connman().ipv4(identifier, "Method"_s), "manual"_s);
    QCOMPARE(client().call("getAddress", identifier).toString(), fixedAddress);
    QCOMPARE(client().call("getGateway", identifier).toString(), gateway);
}

void Scenarios::automaticAddressComesBack()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QString leased = connman().ipv4(identifier, "Address"_s);
    QVERIFY(does("configure", identifier, "manual"_s, fixedAddress, netmask, gateway));
    QVERIFY(eventuallyHas(fixedAddress));

    QVERIFY(does("configure", identifier, "dhcp"_s));

    QVERIFY(eventuallyHas(leased));
    QVERIFY(!Kernel::addresses(wlan).contains(fixedAddress));
    QVERIFY(eventually([&] { return air().reaches(leased); }));
}

void Scenarios::addressIsRemovedWhenIpv4IsOff()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QString leased = connman().ipv4(identifier, "Address"_s);
    QVERIFY(eventuallyHas(leased));

    QVERIFY(does("configure", identifier, "off"_s));

    QVERIFY(eventually([&] { return !Kernel::addresses(wlan).contains(leased); }));
}

void Scenarios::nameServersReachConnman()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QStringList servers{"10.11.1.53"_s, "10.11.1.54"_s};
    const QString configured = "Nameservers.Configuration"_s;

    QVERIFY(does("setNameservers", identifier, servers));

    QCOMPARE(connman().service(identifier).value(configured).toStringList(), servers);
    QVERIFY(
        eventually([&] { return client().call("getNameservers", identifier).toStringList() == servers; }));

    QVERIFY(does("setNameservers", identifier, QStringList()));
    QCOMPARE(connman().service(identifier).value(configured).toStringList(), QStringList());
}

void Scenarios::ipv6CanBeSwitchedOffAndOn()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    QVERIFY(eventually(hasIpv6));

    QVERIFY(does("configureIPv6", identifier, "off"_s));
    QVERIFY(eventually([] { return !hasIpv6(); }));

    QVERIFY(does("configureIPv6", identifier, "auto"_s));
    QVERIFY(eventually(hasIpv6));
}

void Scenarios::invalidAddressesAreRefused()
{
    const QString identifier = network("Atelier"_s);

    QVERIFY(!does("configure", identifier, "manual"_s, fixedAddress, "wide"_s, gateway));
    QVERIFY(!does("configure", identifier, "DHCP"_s));
    QVERIFY(!does("configureIPv6", identifier, "manual"_s));
    QVERIFY(!does("setNameservers", identifier, QStringList{"here"_s}));

    const QStringList told{"error(\"Invalid parameter, netmask: 'wide'\")"_s,
                           "error(\"Invalid parameter, method: 'DHCP'\")"_s,
                           "error(\"Invalid parameter, method: 'manual\")"_s,
                           "error(\"Invalid parameter, nameserver: 'here'\")"_s};
    QTRY_COMPARE(client().heard(), told);
}
