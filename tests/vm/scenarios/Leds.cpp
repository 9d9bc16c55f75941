#include "Eventually.h"
#include "Scenarios.h"

#include <QTest>

namespace {

const QString wifiLed = QStringLiteral("led8");

bool wifiLedShows(const QString &state)
{
    return eventually([&] { return ledState(wifiLed) == state; }, 60000, 20);
}

} // namespace

void Scenarios::wifiLedFollowsJoiningAndLeaving()
{
    const QString identifier = network(QStringLiteral("Atelier"));
    QVERIFY(air().serveAddresses(false)); // keeps the device waiting for its address until told
    QCOMPARE(ledState(wifiLed), QStringLiteral("off"));

    daemon().begin(QStringLiteral("registerWifi"), {identifier, Secret::atelier});
    QVERIFY(wifiLedShows(QStringLiteral("blink 1000")));
    QVERIFY(air().serveAddresses(true));
    QVERIFY(wifiLedShows(QStringLiteral("on")));
    QVERIFY(does(QStringLiteral("forgetWifi"), {identifier}));
    QVERIFY(wifiLedShows(QStringLiteral("off")));
}

void Scenarios::wifiLedBlinksAfterAFailure()
{
    const QString identifier = network(QStringLiteral("Atelier"));

    daemon().begin(QStringLiteral("registerWifi"), {identifier, QStringLiteral("wrong horse")});

    QVERIFY(wifiLedShows(QStringLiteral("blink 500")));
    QVERIFY(eventually([&] { return !daemon().received().isEmpty(); }));
    QVERIFY(wifiLedShows(QStringLiteral("off")));
}
