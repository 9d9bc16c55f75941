#include "Eventually.h"
#include "Kernel.h"
#include "Scenarios.h"
#include "Text.h"

#include <QTest>

void Scenarios::connectKnownNetworkAsksForNothing()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QString cafe = network("Cafe"_s, "none"_s);
    QVERIFY(does("connect"_s, {cafe}));
    QVERIFY(isJoined(cafe));
    daemon().forgetSignals();
    peers().forgetSentences();

    QVERIFY(does("connect"_s, {identifier}));

    QTRY_COMPARE(daemon().received(), QStringList{"networkConnected(%1)"_s.arg(identifier)});
    QTRY_COMPARE(peers().spoken(), QStringList{"6"_s});
    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), "Atelier"_s);
    QCOMPARE(World::preferredNetwork(), "Atelier"_s);
}

void Scenarios::connectUnknownNetworkIsRefused()
{
    const QString unknown = "wifi_020000000000_4e6f6e65_managed_psk"_s;

    QVERIFY(!does("connect"_s, {unknown}));

    QTRY_COMPARE(daemon().received(), QStringList{"error(Unknown network: '%1')"_s.arg(unknown)});
}

void Scenarios::connectNetworkThatNeedsAPassphraseFails()
{
    const QString identifier = network("Atelier"_s);

    QVERIFY(!does("connect"_s, {identifier}));

    QTRY_COMPARE(daemon().received(),
                 QStringList{"error(Unable to connect network '%1'.)"_s.arg(identifier)});
    QTRY_COMPARE(peers().spoken(), QStringList{"5"_s});
    QCOMPARE(Kernel::joinedNetwork(), QString());
}

void Scenarios::disconnectLeavesTheNetworkAndThePreference()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    daemon().forgetSignals();

    QVERIFY(does("disconnect"_s, {identifier}));

    QTRY_COMPARE(daemon().received(), QStringList{"networkDisconnected(%1)"_s.arg(identifier)});
    QVERIFY(eventually([] { return Kernel::joinedNetwork().isEmpty(); }));
    QCOMPARE(World::preferredNetwork(), QString());
    QVERIFY(connman().isFavorite(identifier));
}

void Scenarios::disconnectUnknownNetworkIsRefused()
{
    const QString unknown = "wifi_020000000000_4e6f6e65_managed_psk"_s;

    QVERIFY(!does("disconnect"_s, {unknown}));

    QTRY_COMPARE(daemon().received(), QStringList{"error(Unknown network: '%1')"_s.arg(unknown)});
}

void Scenarios::forgetDropsTheStoredCredentials()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    QVERIFY(Connman::hasStored(identifier, Secret::atelier));
    daemon().forgetSignals();

    QVERIFY(does("forgetWifi"_s, {identifier}));

    QTRY_COMPARE(daemon().received(), QStringList{"networkForgot(%1)"_s.arg(identifier)});
    QVERIFY(!Connman::hasStored(identifier, Secret::atelier));
    QVERIFY(eventually([] { return Kernel::joinedNetwork().isEmpty(); }));
    QCOMPARE(World::preferredNetwork(), QString());
    QVERIFY(!connman().isFavorite(identifier));
    QVERIFY(!does("connect"_s, {identifier}));
}

void Scenarios::emptyNamesAreRefused()
{
    QVERIFY(!does("connect"_s, {QString()}));
    QVERIFY(!does("disconnect"_s, {QString()}));
    QVERIFY(!does("forgetWifi"_s, {QString()}));
    QVERIFY(!does("registerWifi"_s, {QString(), QString()}));

    const QStringList told{"error(Can't connect with an empty network-name.)"_s,
                           "error(Invalid parameter, network: '')"_s, "error(Invalid parameter, ssid: '')"_s,
                           "error(Invalid parameter, ssid: '')"_s};
    QTRY_COMPARE(daemon().received(), told);
}
