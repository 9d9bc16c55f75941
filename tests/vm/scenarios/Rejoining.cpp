#include "Eventually.h"
#include "Scenarios.h"

#include <QTest>

namespace {

constexpr int modifierKey = 32;
constexpr int wifiOnKey = 37;
constexpr int wifiOffKey = 38;

const QString atelier = QStringLiteral("Atelier");

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
    daemon().forgetSignals();
    peers().forgetSentences();

    QVERIFY(does(QStringLiteral("setWifiPower"), {false}));
    QVERIFY(leaves());
    QVERIFY(does(QStringLiteral("setWifiPower"), {true}));

    QVERIFY(eventually([&] { return daemon().hasSent(QStringLiteral("networkConnected(Atelier)")); }));
    const QStringList told{QStringLiteral("powerChanged(false)"), QStringLiteral("powerChanged(true)"),
                           QStringLiteral("networkConnected(Atelier)")};
    QCOMPARE(daemon().received(), told);
    QTRY_COMPARE(peers().spoken(), QStringList{QStringLiteral("7")});
    QVERIFY(isJoined(identifier));
    QVERIFY(joins(atelier));
}

void Scenarios::keyChordSwitchesWifiOffAndOnAndRejoins()
{
    m_world.spoil(); // the daemon looks for the preferred network once more, seconds later
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    daemon().forgetSignals();
    peers().forgetSentences();

    m_world.keyboard().chord(modifierKey, wifiOffKey);
    QVERIFY(eventually([&] { return daemon().hasSent(QStringLiteral("powerChanged(false)")); }));
    QVERIFY(eventually([&] { return !connman().isWifiPowered(); }));
    m_world.keyboard().chord(modifierKey, wifiOnKey);

    QVERIFY(eventually([&] { return daemon().hasSent(QStringLiteral("networkConnected(Atelier)")); }));
    const QStringList said{QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("7")};
    QTRY_COMPARE(peers().spoken(), said);
    QVERIFY(isJoined(identifier));
}

void Scenarios::keysWithoutTheModifierDoNothing()
{
    m_world.spoil(); // the daemon looks for the preferred network once more, seconds later
    m_world.keyboard().press(wifiOffKey);
    m_world.keyboard().release(wifiOffKey);
    m_world.keyboard().press(modifierKey);
    m_world.keyboard().release(modifierKey);
    m_world.keyboard().press(wifiOffKey);
    m_world.keyboard().release(wifiOffKey);
    // The daemon hears keys in order: once it has acted on this chord, those before it have had their chance.
    m_world.keyboard().chord(modifierKey, wifiOnKey);

    QVERIFY(eventually([&] { return daemon().hasSent(QStringLiteral("powerChanged(true)")); }));
    QTRY_COMPARE(peers().spoken(), QStringList{QStringLiteral("3")});
    QCOMPARE(daemon().received(), QStringList{QStringLiteral("powerChanged(true)")});
}

void Scenarios::connmanRestartRejoins()
{
    const QString identifier = joinAtelierToStay();
    QVERIFY(!identifier.isEmpty());
    daemon().forgetSignals();
    peers().forgetSentences();

    QVERIFY(m_world.restartConnman());

    QVERIFY(isRejoined(identifier));
    QVERIFY(peers().hasSpoken(QStringLiteral("7")));
    QVERIFY(joins(atelier));
    QVERIFY(air().reaches(connman().ipv4(identifier, QStringLiteral("Address"))));
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
    QVERIFY(before.contains(QStringLiteral("020000000000")));
    QVERIFY(after.contains(QStringLiteral("02a7c4031fa7")));
    QVERIFY(!connman().isFavorite(after));
    QVERIFY(eventually([&] { return daemon().log().contains(QStringLiteral("call Connect on")); }));
    QCOMPARE(Kernel::joinedNetwork(), QString());
}

void Scenarios::daemonRestartRejoins()
{
    m_world.spoil(); // the daemon looks for the preferred network once more, seconds later
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    QVERIFY(daemon().stopAndWait());
    daemon().forgetSignals();
    peers().forgetSentences();

    QVERIFY(daemon().startAndWait());

    QVERIFY(isRejoined(identifier));
    QVERIFY(peers().hasSpoken(QStringLiteral("7")));
    QVERIFY(joins(atelier));
}

void Scenarios::accessPointOffAndOnRejoins()
{
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());

    QVERIFY(air().switchOff(QStringLiteral("home")));
    QVERIFY(leaves());
    QVERIFY(eventually([] { return ledState(QStringLiteral("led8")) != QStringLiteral("on"); }));
    QVERIFY(air().switchOn(QStringLiteral("home")));

    QVERIFY(joins(atelier));
    QVERIFY(isJoined(network(atelier)));
    QVERIFY(eventually([] { return ledState(QStringLiteral("led8")) == QStringLiteral("on"); }));
}

void Scenarios::preferredNetworkWinsOverAnotherKnownOne()
{
    m_world.spoil(); // the daemon looks for the preferred network once more, seconds later
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    const QString cafe = network(QStringLiteral("Cafe"), QStringLiteral("none"));
    QVERIFY(does(QStringLiteral("registerWifi"), {cafe, QString()}));
    QVERIFY(does(QStringLiteral("connect"), {identifier}));
    QVERIFY(isJoined(identifier));
    daemon().forgetSignals();

    QVERIFY(does(QStringLiteral("setWifiPower"), {false}));
    QVERIFY(leaves());
    QVERIFY(does(QStringLiteral("setWifiPower"), {true}));

    QVERIFY(eventually([&] { return daemon().hasSent(QStringLiteral("networkConnected(Atelier)")); }));
    QVERIFY(joins(atelier));
    QVERIFY(isJoined(identifier));
}
