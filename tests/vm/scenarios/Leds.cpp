#include "EventWait.h"
#include "Scenarios.h"
#include "Text.h"

#include <QTest>

using test_support::eventually;

namespace {

const QString wifiLed = "led8"_s;

bool wifiLedShows(const QString &state)
{
    return eventually([&] { return ledState(wifiLed) == state; }, 60000, 20);
}

} // namespace

void Scenarios::wifiLedFollowsJoiningAndLeaving()
{
    const QString identifier = network("Atelier"_s);
    QVERIFY(air().serveAddresses(false)); // keeps the device waiting for its address until told
    QCOMPARE(ledState(wifiLed), "off"_s);

    client().send("registerWifi", identifier, Secret::atelier);
    QVERIFY(wifiLedShows("blink 1000"_s));
    QVERIFY(air().serveAddresses(true));
    QVERIFY(wifiLedShows("on"_s));
    QVERIFY(does("forgetWifi", identifier));
    QVERIFY(wifiLedShows("off"_s));
}

void Scenarios::wifiLedBlinksAfterAFailure()
{
    const QString identifier = network("Atelier"_s);

    client().send("registerWifi", identifier, "wrong horse"_s);

    QVERIFY(wifiLedShows("blink 500"_s));
    QVERIFY(eventually([&] { return !client().heard().isEmpty(); }));
    QVERIFY(wifiLedShows("off"_s));
}
