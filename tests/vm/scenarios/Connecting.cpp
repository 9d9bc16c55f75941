#include "EventWait.h"
#include "Kernel.h"
#include "Scenarios.h"
#include "Text.h"

#include <QTest>

using test_support::eventually;

void Scenarios::connectKnownNetworkAsksForNothing()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QString cafe = network("Cafe"_s, "none"_s);
    QVERIFY(does("connect", cafe));
    QVERIFY(isJoined(cafe));
    client().clearRecord();
    speech().clear();

    QVERIFY(does("connect", identifier));

    QTRY_COMPARE(client().heard(), QStringList{"networkConnected(\"%1\")"_s.arg(identifier)});
    QTRY_COMPARE(speech().sentences(), QStringList{"6"_s});
    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), "Atelier"_s);
    QCOMPARE(World::preferredNetwork(), "Atelier"_s);
}

void Scenarios::connectUnknownNetworkIsRefused()
{
    const QString unknown = "wifi_020000000000_4e6f6e65_managed_psk"_s;

    QVERIFY(!does("connect", unknown));

    QTRY_COMPARE(client().heard(), QStringList{"error(\"Unknown network: '%1'\")"_s.arg(unknown)});
}

void Scenarios::connectNetworkThatNeedsAPassphraseFails()
{
    const QString identifier = network("Atelier"_s);

    QVERIFY(!does("connect", identifier));

    QTRY_COMPARE(client().heard(),
                 QStringList{"error(\"Unable to connect network '%1'.\")"_s.arg(identifier)});
    QTRY_COMPARE(speech().sentences(), QStringList{"5"_s});
    QCOMPARE(Kernel::joinedNetwork(), QString());
}

void Scenarios::disconnectLeavesTheNetworkAndThePreference()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    client().clearRecord();

    QVERIFY(does("disconnect", identifier));

    QTRY_COMPARE(client().heard(), QStringList{"networkDisconnected(\"%1\")"_s.arg(identifier)});
    QVERIFY(eventually([] { return Kernel::joinedNetwork().isEmpty(); }));
    QCOMPARE(World::preferredNetwork(), QString());
    QVERIFY(connman().isFavorite(identifier));
}

void Scenarios::disconnectUnknownNetworkIsRefused()
{
    const QString unknown = "wifi_020000000000_4e6f6e65_managed_psk"_s;

    QVERIFY(!does("disconnect", unknown));

    QTRY_COMPARE(client().heard(), QStringList{"error(\"Unknown network: '%1'\")"_s.arg(unknown)});
}

void Scenarios::forgetDropsTheStoredCredentials()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    QVERIFY(Connman::hasStored(identifier, Secret::atelier));
    client().clearRecord();

    QVERIFY(does("forgetWifi", identifier));

    QTRY_COMPARE(client().heard(), QStringList{"networkForgot(\"%1\")"_s.arg(identifier)});
    QVERIFY(!Connman::hasStored(identifier, Secret::atelier));
    QVERIFY(eventually([] { return Kernel::joinedNetwork().isEmpty(); }));
    QCOMPARE(World::preferredNetwork(), QString());
    QVERIFY(!connman().isFavorite(identifier));
    QVERIFY(!does("connect", identifier));
}

void Scenarios::emptyNamesAreRefused()
{
    QVERIFY(!does("connect", QString()));
    QVERIFY(!does("disconnect", QString()));
    QVERIFY(!does("forgetWifi", QString()));
    QVERIFY(!does("registerWifi", QString(), QString()));

    const QStringList told{"error(\"Can't connect with an empty network-name.\")"_s,
                           "error(\"Invalid parameter, network: ''\")"_s,
                           "error(\"Invalid parameter, ssid: ''\")"_s,
                           "error(\"Invalid parameter, ssid: ''\")"_s};
    QTRY_COMPARE(client().heard(), told);
}
