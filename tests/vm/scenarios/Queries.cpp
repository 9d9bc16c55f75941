#include "EventWait.h"
#include "Kernel.h"
#include "Scenarios.h"
#include "Text.h"

#include <QTest>

void Scenarios::networksAreListedWithConnmansProperties()
{
    const QString atelier = network("Atelier"_s);
    const QString cafe = network("Cafe"_s, "none"_s);
    const QString office = network("Office"_s, "ieee8021x"_s);

    const QVariantMap networks = client().call("networks").toMap();

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

    QCOMPARE(client().call("wpsNetworks").toStringList(), QStringList{"Studio"_s});
}

void Scenarios::activeNetworksAreTheJoinedOnes()
{
    QCOMPARE(client().call("activeNetworks").toStringList(), QStringList());

    QVERIFY(!joinAtelier().isEmpty());

    QCOMPARE(client().call("activeNetworks").toStringList(), QStringList{"Atelier"_s});
}

void Scenarios::gettersTellWhatTheKernelHas()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const auto text = [&](const char *getter) { return client().call(getter, identifier).toString(); };

    QVERIFY(text("getAddress").startsWith("10.11.1."_s));
    QVERIFY(Kernel::addresses("wlan0"_s).contains(text("getAddress")));
    QCOMPARE(text("getNetmask"), "255.255.255.0"_s);
    QCOMPARE(text("getGateway"), "10.11.1.1"_s);
    QCOMPARE(client().call("getNameservers", identifier).toStringList(), QStringList{"10.11.1.1"_s});
    const QVariantMap configuration = client().call("getConfiguration", identifier).toMap();
    QCOMPARE(configuration.value("Method"_s).toString(), "dhcp"_s);
    QCOMPARE(configuration.value("Address"_s).toString(), text("getAddress"));
    const QVariantMap ipv6 = client().call("getIPv6Configuration", identifier).toMap();
    QCOMPARE(ipv6.value("Method"_s).toString(), "auto"_s);
}
