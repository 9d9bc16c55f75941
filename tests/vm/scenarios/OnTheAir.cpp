#include "Kernel.h"
#include "MachineScenarios.h"

#include "EventWait.h"
#include "OnTheAir.h"
#include "Peers.h"
#include "Text.h"

#include <QTest>

using test_support::eventually;

void MachineScenarios::wlanUsesTheAddressOfTheSerialNumberOnTheAir()
{
    const QString address = Peers::addressOfSerialNumber();
    QVERIFY(!joinAtelier().isEmpty());

    QCOMPARE(OnTheAir::stations("home"_s), QStringList{address});
    QCOMPARE(client().call("getHwAddress", "wlan0"_s).toString(), address.toUpper());
}

void MachineScenarios::secondAccessPointOfTheSameNameTakesOver()
{
    m_world.spoil(); // the supplicant goes on believing in the second access point for a while
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QString first = OnTheAir::joinedAccessPoint();
    QVERIFY(air().switchOn("garden"_s));

    QVERIFY(air().switchOff("home"_s));

    QVERIFY(eventually([&] {
        const QString now = OnTheAir::joinedAccessPoint();
        return !now.isEmpty() && now != first;
    }));
    QVERIFY(eventually([] { return Kernel::joinedNetwork() == "Atelier"_s; }));
    QVERIFY(isJoined(identifier));
}
