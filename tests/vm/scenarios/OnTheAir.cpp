#include "MachineScenarios.h"

#include "Eventually.h"
#include "OnTheAir.h"

#include <QTest>

void MachineScenarios::wlanUsesTheAddressOfTheSerialNumberOnTheAir()
{
    const QString address = DevicePeers::addressOfSerialNumber();
    QVERIFY(!joinAtelier().isEmpty());

    QCOMPARE(OnTheAir::stations(QStringLiteral("home")), QStringList{address});
    QCOMPARE(daemon().call(QStringLiteral("getHwAddress"), {QStringLiteral("wlan0")}).toString(),
             address.toUpper());
}

void MachineScenarios::secondAccessPointOfTheSameNameTakesOver()
{
    m_world.spoil(); // the supplicant goes on believing in the second access point for a while
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QString first = OnTheAir::joinedAccessPoint();
    QVERIFY(air().switchOn(QStringLiteral("garden")));

    QVERIFY(air().switchOff(QStringLiteral("home")));

    QVERIFY(eventually([&] {
        const QString now = OnTheAir::joinedAccessPoint();
        return !now.isEmpty() && now != first;
    }));
    QVERIFY(eventually([] { return Kernel::joinedNetwork() == QStringLiteral("Atelier"); }));
    QVERIFY(isJoined(identifier));
}
