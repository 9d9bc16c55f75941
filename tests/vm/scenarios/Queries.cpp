#include "Eventually.h"
#include "Scenarios.h"

#include <QTest>

void Scenarios::networksAreListedWithConnmansProperties()
{
    const QString atelier = network(QStringLiteral("Atelier"));
    const QString cafe = network(QStringLiteral("Cafe"), QStringLiteral("none"));
    const QString office = network(QStringLiteral("Office"), QStringLiteral("ieee8021x"));

    const QVariantMap networks = daemon().call(QStringLiteral("networks")).toMap();

    QVERIFY(networks.contains(cafe));
    QVERIFY(networks.contains(office));
    const QVariantMap properties = networks.value(atelier).toMap();
    QCOMPARE(properties.value(QStringLiteral("Name")).toString(), QStringLiteral("Atelier"));
    QCOMPARE(properties.value(QStringLiteral("Type")).toString(), QStringLiteral("wifi"));
    QCOMPARE(properties.value(QStringLiteral("State")).toString(), QStringLiteral("idle"));
    QCOMPARE(properties.value(QStringLiteral("Security")).toStringList(), QStringList{QStringLiteral("psk")});
    QVERIFY(properties.value(QStringLiteral("Strength")).toInt() > 0);
}

void Scenarios::onlyNetworksWithWpsAreListedAsSuch()
{
    QVERIFY(!network(QStringLiteral("Studio")).isEmpty());

    QCOMPARE(daemon().call(QStringLiteral("wpsNetworks")).toStringList(),
             QStringList{QStringLiteral("Studio")});
}

void Scenarios::activeNetworksAreTheJoinedOnes()
{
    QCOMPARE(daemon().call(QStringLiteral("activeNetworks")).toStringList(), QStringList());

    QVERIFY(!joinAtelier().isEmpty());

    QCOMPARE(daemon().call(QStringLiteral("activeNetworks")).toStringList(),
             QStringList{QStringLiteral("Atelier")});
}

void Scenarios::gettersTellWhatTheKernelHas()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const auto text = [&](const char *getter) {
        return daemon().call(QString::fromLatin1(getter), {identifier}).toString();
    };

    QVERIFY(text("getAddress").startsWith(QStringLiteral("10.11.1.")));
    QVERIFY(Kernel::addresses(QStringLiteral("wlan0")).contains(text("getAddress")));
    QCOMPARE(text("getNetmask"), QStringLiteral("255.255.255.0"));
    QCOMPARE(text("getGateway"), QStringLiteral("10.11.1.1"));
    QCOMPARE(daemon().call(QStringLiteral("getNameservers"), {identifier}).toStringList(),
             QStringList{QStringLiteral("10.11.1.1")});
    const QVariantMap configuration = daemon().call(QStringLiteral("getConfiguration"), {identifier}).toMap();
    QCOMPARE(configuration.value(QStringLiteral("Method")).toString(), QStringLiteral("dhcp"));
    QCOMPARE(configuration.value(QStringLiteral("Address")).toString(), text("getAddress"));
    const QVariantMap ipv6 = daemon().call(QStringLiteral("getIPv6Configuration"), {identifier}).toMap();
    QCOMPARE(ipv6.value(QStringLiteral("Method")).toString(), QStringLiteral("auto"));
}
