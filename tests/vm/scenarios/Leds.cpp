#include "Device.h"
#include "EventWait.h"
#include "Scenarios.h"
#include "Text.h"

#include <QTest>

using test_support::eventually;
using test_support::LedPattern;

namespace {

const QString wifiLed = "led8"_s;

bool wifiLedShows(const LedPattern &pattern)
{
    return eventually([&] { return Device::led(wifiLed) == pattern; }, 60000, 20);
}

} // namespace

void Scenarios::wifiLedFollowsJoiningAndLeaving()
{
    const QString identifier = network("Atelier"_s);
    QVERIFY(air().serveAddresses(false)); // keeps the device waiting for its address until told
    QCOMPARE(Device::led(wifiLed), LedPattern::off());

    client().send("registerWifi", identifier, Secret::atelier);
    QVERIFY(wifiLedShows(LedPattern::blink(1000)));
    QVERIFY(air().serveAddresses(true));
    QVERIFY(wifiLedShows(LedPattern::on()));
    QVERIFY(does("forgetWifi", identifier));
    QVERIFY(wifiLedShows(LedPattern::off()));
}

void Scenarios::wifiLedBlinksAfterAFailure()
{
    const QString identifier = network("Atelier"_s);

    client().send("registerWifi", identifier, "wrong horse"_s);

    QVERIFY(wifiLedShows(LedPattern::blink(500)));
    QVERIFY(eventually([&] { return !client().heard().isEmpty(); }));
    QVERIFY(wifiLedShows(LedPattern::off()));
}
