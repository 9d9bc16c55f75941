#include "Eventually.h"
#include "Scenarios.h"

#include <QTest>

void Scenarios::registerWithPassphraseJoinsAndIsRemembered()
{
    const QString identifier = network(QStringLiteral("Atelier"));

    QVERIFY(does(QStringLiteral("registerWifi"), {identifier, Secret::atelier}));

    QTRY_COMPARE(daemon().received(), QStringList{QStringLiteral("networkRegistered(%1)").arg(identifier)});
    QTRY_COMPARE(peers().spoken(), QStringList{QStringLiteral("6")});
    QCOMPARE(World::preferredNetwork(), QStringLiteral("Atelier"));
    QVERIFY(isJoined(identifier));
    QVERIFY(connman().isFavorite(identifier));
    QCOMPARE(Kernel::joinedNetwork(), QStringLiteral("Atelier"));
    QVERIFY(air().reaches(connman().ipv4(identifier, QStringLiteral("Address"))));
}

void Scenarios::registerWithWrongPassphraseReportsInvalidKey()
{
    const QString identifier = network(QStringLiteral("Atelier"));

    QVERIFY(!does(QStringLiteral("registerWifi"), {identifier, QStringLiteral("wrong horse")}));

    QTRY_COMPARE(daemon().received(), QStringList{QStringLiteral("error(invalid-key)")});
    QTRY_COMPARE(peers().spoken(), QStringList{QStringLiteral("5")});
    QVERIFY(!connman().isFavorite(identifier));
    QCOMPARE(World::preferredNetwork(), QString());
    QCOMPARE(Kernel::joinedNetwork(), QString());
}

void Scenarios::registerAfterAWrongPassphraseStillSucceeds()
{
    const QString identifier = network(QStringLiteral("Atelier"));
    QVERIFY(!does(QStringLiteral("registerWifi"), {identifier, QStringLiteral("wrong horse")}));

    QVERIFY(does(QStringLiteral("registerWifi"), {identifier, Secret::atelier}));

    QVERIFY(isJoined(identifier));
    QCOMPARE(World::preferredNetwork(), QStringLiteral("Atelier"));
}

void Scenarios::registerOpenNetworkNeedsNoPassphrase()
{
    const QString identifier = network(QStringLiteral("Cafe"), QStringLiteral("none"));

    QVERIFY(does(QStringLiteral("registerWifi"), {identifier, QString()}));

    QTRY_COMPARE(daemon().received(), QStringList{QStringLiteral("networkRegistered(%1)").arg(identifier)});
    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), QStringLiteral("Cafe"));
    QCOMPARE(World::preferredNetwork(), QStringLiteral("Cafe"));
}

void Scenarios::registerHiddenNetworkByItsName()
{
    const QString hidden = network(QString(), QStringLiteral("hidden_managed_psk"));

    QVERIFY(does(QStringLiteral("registerHiddenWifi"), {QStringLiteral("Cellar"), hidden, Secret::cellar}));

    QTRY_COMPARE(daemon().received(), QStringList{QStringLiteral("networkRegistered(%1)").arg(hidden)});
    // Joined, the network is a service of its own, under an identifier made from its name.
    const QString joined = network(QStringLiteral("Cellar"));
    QVERIFY(isJoined(joined));
    QVERIFY(connman().isFavorite(joined));
    QCOMPARE(Kernel::joinedNetwork(), QStringLiteral("Cellar"));
}

void Scenarios::registerHiddenNetworkWithWrongPassphraseFails()
{
    const QString hidden = network(QString(), QStringLiteral("hidden_managed_psk"));

    QVERIFY(!does(QStringLiteral("registerHiddenWifi"),
                  {QStringLiteral("Cellar"), hidden, QStringLiteral("turnips and beer")}));

    QTRY_COMPARE(peers().spoken(), QStringList{QStringLiteral("5")});
    QCOMPARE(Kernel::joinedNetwork(), QString());
    QCOMPARE(connman().favorites(), QStringList());
}

void Scenarios::registerSecondNetworkMakesItThePreferredOne()
{
    const QString cafe = network(QStringLiteral("Cafe"), QStringLiteral("none"));
    QVERIFY(does(QStringLiteral("registerWifi"), {cafe, QString()}));

    const QString atelier = joinAtelier();

    QVERIFY(!atelier.isEmpty());
    QCOMPARE(World::preferredNetwork(), QStringLiteral("Atelier"));
    QCOMPARE(Kernel::joinedNetwork(), QStringLiteral("Atelier"));
    QVERIFY(connman().isFavorite(cafe));
    QCOMPARE(connman().state(cafe), QStringLiteral("idle"));
}

void Scenarios::registerUnknownNetworkIsRefused()
{
    const QString unknown = QStringLiteral("wifi_020000000000_4e6f6e65_managed_psk");

    QVERIFY(!does(QStringLiteral("registerWifi"), {unknown, QStringLiteral("whatever it is")}));

    QTRY_COMPARE(daemon().received(),
                 QStringList{QStringLiteral("error(Unknown network: '%1')").arg(unknown)});
    QCOMPARE(peers().spoken(), QStringList());
}

void Scenarios::registerWithoutPassphraseIsRefused()
{
    const QString identifier = network(QStringLiteral("Atelier"));

    QVERIFY(!does(QStringLiteral("registerWifi"), {identifier, QString()}));

    QTRY_COMPARE(daemon().received(), QStringList{QStringLiteral("error(Invalid parameter, psk: '')")});
    QCOMPARE(connman().state(identifier), QStringLiteral("idle"));
}
