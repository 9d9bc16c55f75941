#include "Eventually.h"
#include "Scenarios.h"

#include <QTest>

namespace {

const QString studio = QStringLiteral("studio");
const QString pin = QStringLiteral("12345670"); // the last digit is the checksum of the others
const QString otherPin = QStringLiteral("76543210");

} // namespace

void Scenarios::registerWithWpsPin()
{
    const QString identifier = network(QStringLiteral("Studio"));
    QVERIFY(air().expectPin(studio, pin));

    QVERIFY(does(QStringLiteral("registerWifiWps"), {identifier, pin}));

    QTRY_COMPARE(daemon().received(), QStringList{QStringLiteral("networkRegistered(%1)").arg(identifier)});
    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), QStringLiteral("Studio"));
    QCOMPARE(World::preferredNetwork(), QStringLiteral("Studio"));
    QVERIFY(connman().isFavorite(identifier));
}

void Scenarios::registerWithWrongWpsPinFails()
{
    const QString identifier = network(QStringLiteral("Studio"));
    QVERIFY(air().expectPin(studio, pin));

    QVERIFY(!does(QStringLiteral("registerWifiWps"), {identifier, otherPin}));

    QTRY_COMPARE(daemon().received(),
                 QStringList{QStringLiteral("error(Unable to register network 'Studio' using WPS.)")});
    QVERIFY(!connman().isFavorite(identifier));
    QCOMPARE(World::preferredNetwork(), QString());
}

void Scenarios::registerWithWpsToAnyNetworkIsRefused()
{
    QVERIFY(!does(QStringLiteral("registerWifiWps"), {QString()}));

    QCOMPARE(daemon().received(), QStringList());
    QVERIFY(eventually([&] {
        return daemon().log().contains(QStringLiteral("Connect to any WPS network isn't supported."));
    }));
}
