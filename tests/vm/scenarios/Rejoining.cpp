#include "Device.h"
#include "EventWait.h"
#include "Kernel.h"
#include "Keys.h"
#include "Scenarios.h"
#include "Text.h"

#include <QTest>

using test_support::eventually;
using test_support::LedPattern;

namespace {

const QString atelier = "Atelier"_s;

bool joins(const QString &name)
{
    return eventually([&] { return Kernel::joinedNetwork() == name; });
}

bool leaves()
{
    return eventually([] { return Kernel::joinedNetwork().isEmpty(); });
}

} // namespace

void Scenarios::wifiOffAndOnOverTheBusRejoins()
{
    m_world.spoil(); // the daemon looks for the preferred network once more, seconds later
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    client().clearRecord();
    speech().clear();

    QVERIFY(does("setWifiPower", false));
    QVERIFY(leaves());
    QVERIFY(does("setWifiPower", true));

    QVERIFY(eventually([&] { return client().heard().contains("networkConnected(\"Atelier\")"_s); }));
    const QStringList told{"powerChanged(false)"_s, "powerChanged(true)"_s,
                           "networkConnected(\"Atelier\")"_s};
    QCOMPARE(client().heard(), told);
    QTRY_COMPARE(speech().sentences(), QStringList{"7"_s});
    QVERIFY(isJoined(identifier));
    QVERIFY(joins(atelier));
}

void Scenarios::keyChordSwitchesWifiOffAndOnAndRejoins()
{
    m_world.spoil(); // the daemon looks for the preferred network once more, seconds later
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    client().clearRecord();
    speech().clear();

    keys::pressChord(m_world.keyboard(), keys::wifiOff);
    QVERIFY(eventually([&] { return client().heard().contains("powerChanged(false)"_s); }));
    QVERIFY(eventually([&] { return !connman().isWifiPowered(); }));
    keys::pressChord(m_world.keyboard(), keys::wifiOn);

    QVERIFY(eventually([&] { return client().heard().contains("networkConnected(\"Atelier\")"_s); }));
    const QStringList said{"2"_s, "3"_s, "7"_s};
    QTRY_COMPARE(speech().sentences(), said);
    QVERIFY(isJoined(identifier));
}

void Scenarios::keysWithoutTheModifierDoNothing()
{
    m_world.spoil(); // the daemon looks for the preferred network once more, seconds later
    m_world.keyboard().press(keys::wifiOff);
    m_world.keyboard().release(keys::wifiOff);
    m_world.keyboard().press(keys::modifier);
    m_world.keyboard().release(keys::modifier);
    m_world.keyboard().press(keys::wifiOff);
    m_world.keyboard().release(keys::wifiOff);
    // The daemon hears keys in order: once it has acted on this chord, those before it have had their chance.
    keys::pressChord(m_world.keyboard(), keys::wifiOn);

    QVERIFY(eventually([&] { return client().heard().contains("powerChanged(true)"_s); }));
    QTRY_COMPARE(speech().sentences(), QStringList{"3"_s});
    QCOMPARE(client().heard(), QStringList{"powerChanged(true)"_s});
}

void Scenarios::connmanRestartRejoins()
{
    const QString identifier = joinAtelierToStay();
    QVERIFY(!identifier.isEmpty());
    client().clearRecord();
    speech().clear();

    QVERIFY(m_world.restartConnman());

    QVERIFY(isRejoined(identifier));
    QVERIFY(speech().count(7) > 0);
    QVERIFY(joins(atelier));
    QVERIFY(air().reaches(connman().ipv4(identifier, "Address"_s)));
}

/// ConnMan puts the card's address into the identifiers under which it stores networks. The first ConnMan
/// after power-on sees the card's own address, because the daemon changes it only then; the next one sees the
/// changed one.
void Scenarios::connmanRestartAfterPowerOnNeedsTheCredentialsAgain()
{
    const QString before = joinAtelier();
    QVERIFY(!before.isEmpty());
    m_world.spoil();

    QVERIFY(m_world.restartConnman());

    const QString after = network(atelier);
    QVERIFY(before.contains("020000000000"_s));
    QVERIFY(after.contains("02a7c4031fa7"_s));
    QVERIFY(!connman().isFavorite(after));
    QVERIFY(eventually([&] { return daemon().log().contains("call Connect on"_s); }));
    QCOMPARE(Kernel::joinedNetwork(), QString());
}

void Scenarios::daemonRestartRejoins()
{
    m_world.spoil(); // the daemon looks for the preferred network once more, seconds later
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    QVERIFY(m_world.stopDaemon());
    client().clearRecord();
    speech().clear();

    QVERIFY(m_world.startDaemon());

    QVERIFY(isRejoined(identifier));
    QVERIFY(speech().count(7) > 0);
    QVERIFY(joins(atelier));
}

void Scenarios::accessPointOffAndOnRejoins()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());

    QVERIFY(air().switchOff("home"_s));
    QVERIFY(leaves());
    QVERIFY(eventually([] { return Device::led("led8"_s) != LedPattern::on(); }));
    QVERIFY(air().switchOn("home"_s));

    QVERIFY(joins(atelier));
    QVERIFY(isJoined(network(atelier)));
    QVERIFY(eventually([] { return Device::led("led8"_s) == LedPattern::on(); }));
}

void Scenarios::preferredNetworkWinsOverAnotherKnownOne()
{
    m_world.spoil(); // the daemon looks for the preferred network once more, seconds later
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QString cafe = network("Cafe"_s, "none"_s);
    QVERIFY(does("registerWifi", cafe, QString()));
    QVERIFY(does("connect", identifier));
    QVERIFY(isJoined(identifier));
    client().clearRecord();

    QVERIFY(does("setWifiPower", false));
    QVERIFY(leaves());
    QVERIFY(does("setWifiPower", true));

    QVERIFY(eventually([&] { return client().heard().contains("networkConnected(\"Atelier\")"_s); }));
    QVERIFY(joins(atelier));
    QVERIFY(isJoined(identifier));
}
