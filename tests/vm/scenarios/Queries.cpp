#include "Eventually.h"
#include "Kernel.h"
#include "Scenarios.h"
#include "Text.h"

#include <QTest>

void Scenarios::networksAreListedWithConnmansProperties()
{
    const QString atelier = network("Atelier"_s);
    const QString cafe = network("Cafe"_s, "none"_s);
    const QString office = network("Office"_s, "ieee8021x"_s);

    const QVariantMap networks = daemon().call("networks"_s).toMap();

    QVERIFY(networks.contains(cafe));
    QVERIFY(networks.contains(office));
    const QVariantMap properties = networks.value(atelier).toMap();
    QCOMPARE(properties.value("Name"_s).toString(), "Atelier"_s);
    QCOMPARE(properties.value("Type"_s).toString(), "wifi"_s);
    QCOMPARE(properties.value("State"_s).toString(), "idle"_s);
    QCOMPARE(properties.value("Security"_s).toStringList(), QStringList{"psk"_s});
    QVERIFY(properties.value("Strength"_s).toInt() > 0);
}

void Scenarios::onlyNetworksWithWpsAreListedAsSuch()
{
    QVERIFY(!network("Studio"_s).isEmpty());

    QCOMPARE(daemon().call("wpsNetworks"_s).toStringList(), QStringList{"Studio"_s});
}

void Scenarios::activeNetworksAreTheJoinedOnes()
{
    QCOMPARE(daemon().call("activeNetworks"_s).toStringList(), QStringList());

    QVERIFY(!joinAtelier().isEmpty());

    QCOMPARE(daemon().call("activeNetworks"_s).toStringList(), QStringList{"Atelier"_s});
}

void Scenarios::gettersTellWhatTheKernelHas()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const auto text = [&](const char *getter) {
        return daemon().call(QString::fromLatin1(getter), {identifier}).toString();
    };

    QVERIFY(text("getAddress").startsWith("10.11.1."_s));
    QVERIFY(Kernel::addresses("wlan0"_s).contains(text("getAddress")));
    QCOMPARE(text("getNetmask"), "255.255.255.0"_s);
    QCOMPARE(text("getGateway"), "10.11.1.1"_s);
    QCOMPARE(daemon().call("getNameservers"_s, {identifier}).toStringList(), QStringList{"10.11.1.1"_s});
    const QVariantMap configuration = daemon().call("getConfiguration"_s, {identifier}).toMap();
    QCOMPARE(configuration.value("Method"_s).toString(), "dhcp"_s);
    QCOMPARE(configuration.value("Address"_s).toString(), text("getAddress"));
    const QVariantMap ipv6 = daemon().call("getIPv6Configuration"_s, {identifier}).toMap();
    QCOMPARE(ipv6.value("Method"_s).toString(), "auto"_s);
}
