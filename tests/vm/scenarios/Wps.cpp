#include "EventWait.h"
#include "Kernel.h"
#include "Scenarios.h"
#include "Text.h"

#include <QTest>

using test_support::eventually;

namespace {

const QString studio = "studio"_s;
const QString pin = "12345670"_s; // the last digit is the checksum of the others
const QString otherPin = "76543210"_s;

} // namespace

void Scenarios::registerWithWpsPin()
{
    const QString identifier = network("Studio"_s);
    QVERIFY(air().expectPin(studio, pin));

    QVERIFY(does("registerWifiWps", identifier, pin));

    QTRY_COMPARE(client().heard(), QStringList{"networkRegistered(\"%1\")"_s.arg(identifier)});
    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), "Studio"_s);
    QCOMPARE(World::preferredNetwork(), "Studio"_s);
    QVERIFY(connman().isFavorite(identifier));
}

void Scenarios::registerWithWrongWpsPinFails()
{
    const QString identifier = network("Studio"_s);
    QVERIFY(air().expectPin(studio, pin));

    QVERIFY(!does("registerWifiWps", identifier, otherPin));

    QTRY_COMPARE(client().heard(),
                 QStringList{"error(\"Unable to register network 'Studio' using WPS.\")"_s});
    QVERIFY(!connman().isFavorite(identifier));
    QCOMPARE(World::preferredNetwork(), QString());
}

void Scenarios::registerWithWpsToAnyNetworkIsRefused()
{
    QVERIFY(!does("registerWifiWps", QString()));

    QCOMPARE(client().heard(), QStringList());
    QVERIFY(
        eventually([&] { return daemon().log().contains("Connect to any WPS network isn't supported."_s); }));
}
