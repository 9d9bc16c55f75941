#include "Eventually.h"
#include "Scenarios.h"

#include <QTest>

void Scenarios::connectKnownNetworkAsksForNothing()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QString cafe = network(QStringLiteral("Cafe"), QStringLiteral("none"));
    QVERIFY(does(QStringLiteral("connect"), {cafe}));
    QVERIFY(isJoined(cafe));
    daemon().forgetSignals();
    peers().forgetSentences();

    QVERIFY(does(QStringLiteral("connect"), {identifier}));

    QTRY_COMPARE(daemon().received(), QStringList{QStringLiteral("networkConnected(%1)").arg(identifier)});
    QTRY_COMPARE(peers().spoken(), QStringList{QStringLiteral("6")});
    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), QStringLiteral("Atelier"));
    QCOMPARE(World::preferredNetwork(), QStringLiteral("Atelier"));
}

void Scenarios::connectUnknownNetworkIsRefused()
{
    const QString unknown = QStringLiteral("wifi_020000000000_4e6f6e65_managed_psk");

    QVERIFY(!does(QStringLiteral("connect"), {unknown}));

    QTRY_COMPARE(daemon().received(),
                 QStringList{QStringLiteral("error(Unknown network: '%1')").arg(unknown)});
}

void Scenarios::connectNetworkThatNeedsAPassphraseFails()
{
    const QString identifier = network(QStringLiteral("Atelier"));

    QVERIFY(!does(QStringLiteral("connect"), {identifier}));

    QTRY_COMPARE(daemon().received(),
                 QStringList{QStringLiteral("error(Unable to connect network '%1'.)").arg(identifier)});
    QTRY_COMPARE(peers().spoken(), QStringList{QStringLiteral("5")});
    QCOMPARE(Kernel::joinedNetwork(), QString());
}

void Scenarios::disconnectLeavesTheNetworkAndThePreference()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    daemon().forgetSignals();

    QVERIFY(does(QStringLiteral("disconnect"), {identifier}));

    QTRY_COMPARE(daemon().received(), QStringList{QStringLiteral("networkDisconnected(%1)").arg(identifier)});
    QVERIFY(eventually([] { return Kernel::joinedNetwork().isEmpty(); }));
    QCOMPARE(World::preferredNetwork(), QString());
    QVERIFY(connman().isFavorite(identifier));
}

void Scenarios::disconnectUnknownNetworkIsRefused()
{
    const QString unknown = QStringLiteral("wifi_020000000000_4e6f6e65_managed_psk");

    QVERIFY(!does(QStringLiteral("disconnect"), {unknown}));

    QTRY_COMPARE(daemon().received(),
                 QStringList{QStringLiteral("error(Unknown network: '%1')").arg(unknown)});
}

void Scenarios::forgetDropsTheStoredCredentials()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    QVERIFY(Connman::hasStored(identifier, Secret::atelier));
    daemon().forgetSignals();

    QVERIFY(does(QStringLiteral("forgetWifi"), {identifier}));

    QTRY_COMPARE(daemon().received(), QStringList{QStringLiteral("networkForgot(%1)").arg(identifier)});
    QVERIFY(!Connman::hasStored(identifier, Secret::atelier));
    QVERIFY(eventually([] { return Kernel::joinedNetwork().isEmpty(); }));
    QCOMPARE(World::preferredNetwork(), QString());
    QVERIFY(!connman().isFavorite(identifier));
    QVERIFY(!does(QStringLiteral("connect"), {identifier}));
}

void Scenarios::emptyNamesAreRefused()
{
    QVERIFY(!does(QStringLiteral("connect"), {QString()}));
    QVERIFY(!does(QStringLiteral("disconnect"), {QString()}));
    QVERIFY(!does(QStringLiteral("forgetWifi"), {QString()}));
    QVERIFY(!does(QStringLiteral("registerWifi"), {QString(), QString()}));

    const QStringList told{QStringLiteral("error(Can't connect with an empty network-name.)"),
                           QStringLiteral("error(Invalid parameter, network: '')"),
                           QStringLiteral("error(Invalid parameter, ssid: '')"),
                           QStringLiteral("error(Invalid parameter, ssid: '')")};
    QTRY_COMPARE(daemon().received(), told);
}
