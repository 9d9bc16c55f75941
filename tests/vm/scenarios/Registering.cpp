#include "EventWait.h"
#include "Kernel.h"
#include "Scenarios.h"
#include "Text.h"

#include <QTest>

void Scenarios::registerWithPassphraseJoinsAndIsRemembered()
{
    const QString identifier = network("Atelier"_s);

    QVERIFY(does("registerWifi", identifier, Secret::atelier));

    QTRY_COMPARE(client().heard(), QStringList{"networkRegistered(\"%1\")"_s.arg(identifier)});
    QTRY_COMPARE(speech().sentences(), QStringList{"6"_s});
    QCOMPARE(World::preferredNetwork(), "Atelier"_s);
    QVERIFY(isJoined(identifier));
    QVERIFY(connman().isFavorite(identifier));
    QCOMPARE(Kernel::joinedNetwork(), "Atelier"_s);
    QVERIFY(air().reaches(connman().ipv4(identifier, "Address"_s)));
}

void Scenarios::registerWithWrongPassphraseReportsInvalidKey()
{
    const QString identifier = network("Atelier"_s);

    QVERIFY(!does("registerWifi", identifier, "wrong horse"_s));

    QTRY_COMPARE(client().heard(), QStringList{"error(\"invalid-key\")"_s});
    QTRY_COMPARE(speech().sentences(), QStringList{"5"_s});
    QVERIFY(!connman().isFavorite(identifier));
    QCOMPARE(World::preferredNetwork(), QString());
    QCOMPARE(Kernel::joinedNetwork(), QString());
}

void Scenarios::registerAfterAWrongPassphraseStillSucceeds()
{
    const QString identifier = network("Atelier"_s);
    QVERIFY(!does("registerWifi", identifier, "wrong horse"_s));

    QVERIFY(does("registerWifi", identifier, Secret::atelier));

    QVERIFY(isJoined(identifier));
    QCOMPARE(World::preferredNetwork(), "Atelier"_s);
}

void Scenarios::registerOpenNetworkNeedsNoPassphrase()
{
    const QString identifier = network("Cafe"_s, "none"_s);

    QVERIFY(does("registerWifi", identifier, QString()));

    QTRY_COMPARE(client().heard(), QStringList{"networkRegistered(\"%1\")"_s.arg(identifier)});
    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), "Cafe"_s);
    QCOMPARE(World::preferredNetwork(), "Cafe"_s);
}

void Scenarios::registerHiddenNetworkByItsName()
{
    const QString hidden = network(QString(), "hidden_managed_psk"_s);

    QVERIFY(does("registerHiddenWifi", "Cellar"_s, hidden, Secret::cellar));

    QTRY_COMPARE(client().heard(), QStringList{"networkRegistered(\"%1\")"_s.arg(hidden)});
    // Joined, the network is a service of its own, under an identifier made from its name.
    const QString joined = network("Cellar"_s);
    QVERIFY(isJoined(joined));
    QVERIFY(connman().isFavorite(joined));
    QCOMPARE(Kernel::joinedNetwork(), "Cellar"_s);
}

void Scenarios::registerHiddenNetworkWithWrongPassphraseFails()
{
    const QString hidden = network(QString(), "hidden_managed_psk"_s);

    QVERIFY(!does("registerHiddenWifi", "Cellar"_s, hidden, "turnips and beer"_s));

    QTRY_COMPARE(speech().sentences(), QStringList{"5"_s});
    QCOMPARE(Kernel::joinedNetwork(), QString());
    QCOMPARE(connman().favorites(), QStringList());
}

void Scenarios::registerSecondNetworkMakesItThePreferredOne()
{
    const QString cafe = network("Cafe"_s, "none"_s);
    QVERIFY(does("registerWifi", cafe, QString()));

    const QString atelier = joinAtelier();

    QVERIFY(!atelier.isEmpty());
    QCOMPARE(World::preferredNetwork(), "Atelier"_s);
    QCOMPARE(Kernel::joinedNetwork(), "Atelier"_s);
    QVERIFY(connman().isFavorite(cafe));
    QCOMPARE(connman().state(cafe), "idle"_s);
}

void Scenarios::registerUnknownNetworkIsRefused()
{
    const QString unknown = "wifi_020000000000_4e6f6e65_managed_psk"_s;

    QVERIFY(!does("registerWifi", unknown, "whatever it is"_s));

    QTRY_COMPARE(client().heard(), QStringList{"error(\"Unknown network: '%1'\")"_s.arg(unknown)});
    QCOMPARE(speech().sentences(), QStringList());
}

void Scenarios::registerWithoutPassphraseIsRefused()
{
    const QString identifier = network("Atelier"_s);

    QVERIFY(!does("registerWifi", identifier, QString()));

    QTRY_COMPARE(client().heard(), QStringList{"error(\"Invalid parameter, psk: ''\")"_s});
    QCOMPARE(connman().state(identifier), "idle"_s);
}
