#include "ConnmanConversation.h"
#include "EventWait.h"
#include "Kernel.h"
#include "Scenarios.h"
#include "Text.h"

#include <QDBusConnection>
#include <QTest>

using test_support::ConnmanConversation;
using test_support::eventually;

namespace {

const QString studio = "studio"_s;

bool isAssociating(const QString &line)
{
    return line == "Studio State association"_s;
}

} // namespace

/// Where the access point waits for the PIN before ConnMan is asked to connect, ConnMan takes it for one
/// whose button was pressed, asks for no PIN, and gives up after two minutes.
bool Scenarios::beginsWps(const QString &identifier, const QString &pinOfThisDevice)
{
    ConnmanConversation conversation(QDBusConnection::systemBus(), isAssociating);
    client().send("registerWifiWps", identifier, pinOfThisDevice);
    return !conversation.heard(1).isEmpty();
}

bool Scenarios::answers(const QString &entry)
{
    constexpr int longerThanConnmanTriesMs = 150000;
    return eventually([&] { return client().record().contains(entry); }, longerThanConnmanTriesMs);
}

/// ConnMan does not forget a PIN that was wrong, hence a new one here and for the button.
void Scenarios::registerWithWpsPin()
{
    QVERIFY(beginAfresh());
    const QString identifier = network("Studio"_s);

    QVERIFY(beginsWps(identifier, Secret::studioPin));
    QVERIFY(air().expectPin(studio, Secret::studioPin));
    QVERIFY(answers("registerWifiWps -> true"_s));

    QTRY_COMPARE(client().heard(), QStringList{"networkRegistered(\"%1\")"_s.arg(identifier)});
    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), "Studio"_s);
    QCOMPARE(World::preferredNetwork(), "Studio"_s);
    QVERIFY(connman().isFavorite(identifier));
}

/// Takes two minutes where no right one came before: ConnMan, then, does not heed the access point's refusal.
void Scenarios::registerWithWrongWpsPinFails()
{
    const QString identifier = network("Studio"_s);

    QVERIFY(beginsWps(identifier, Secret::wrongPin));
    QVERIFY(air().expectPin(studio, Secret::studioPin));
    QVERIFY(answers("registerWifiWps -> false"_s));

    QTRY_COMPARE(client().heard(),
                 QStringList{"error(\"Unable to register network 'Studio' using WPS.\")"_s});
    QVERIFY(!connman().isFavorite(identifier));
    QCOMPARE(World::preferredNetwork(), QString());
}

void Scenarios::registerWithTheButtonAtTheAccessPoint()
{
    QVERIFY(beginAfresh());
    const QString identifier = network("Studio"_s);
    QVERIFY(air().pressButton(studio));

    QVERIFY(does("registerWifiWps", identifier, QString()));

    QTRY_COMPARE(client().heard(), QStringList{"networkRegistered(\"%1\")"_s.arg(identifier)});
    QVERIFY(isJoined(identifier));
}

void Scenarios::registerWithWpsToAnyNetworkIsRefused()
{
    QVERIFY(!does("registerWifiWps", QString()));

    QCOMPARE(client().heard(), QStringList());
    QVERIFY(
        eventually([&] { return daemon().log().contains("Connect to any WPS network isn't supported."_s); }));
}
