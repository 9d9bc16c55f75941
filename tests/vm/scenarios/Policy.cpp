#include "BusUser.h"
#include "Eventually.h"
#include "MachineScenarios.h"

#include <QDBusConnectionInterface>
#include <QFile>
#include <QTest>
#include <QXmlStreamReader>

namespace {

const QString daemonName = QStringLiteral("com.tactora.NetworkManager");
const QString accessDenied = QStringLiteral("org.freedesktop.DBus.Error.AccessDenied");
const QString unknownMethod = QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod");
constexpr int methodCount = 34;

QStringList allMethods()
{
    QFile file(QStringLiteral("/usr/share/dbus-1/interfaces/com.tactora.NetworkManager.xml"));
    QStringList names;
    if (file.open(QIODevice::ReadOnly)) {
        QXmlStreamReader reader(&file);
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement &&
                reader.name() == QLatin1String("method")) {
                names.append(reader.attributes().value(QStringLiteral("name")).toString());
            }
        }
    }
    return names;
}

/// With arguments that no method has: whom the bus lets through hears from the daemon itself that there is no
/// such method, and nothing is done.
QDBusMessage harmlessCall(const QString &method)
{
    QDBusMessage call = QDBusMessage::createMethodCall(daemonName, QStringLiteral("/"), daemonName, method);
    call.setArguments({QVariant::fromValue(uchar(1)), 2.5, QVariant::fromValue(uchar(3))});
    return call;
}

QStringList methodsAnsweredWith(const QString &error, BusUser &user)
{
    QStringList names;
    const QStringList methods = allMethods();
    for (const QString &method : methods) {
        if (user.errorOf(harmlessCall(method)) == error) {
            names.append(method);
        }
    }
    return names;
}

QDBusMessage agentCall()
{
    return QDBusMessage::createMethodCall(daemonName, QStringLiteral("/agent"),
                                          QStringLiteral("net.connman.Agent"), QStringLiteral("Cancel"));
}

} // namespace

void MachineScenarios::memberOfTheGroupMayCallEverything()
{
    BusUser member(QStringLiteral("member"), QStringLiteral("netdev"));
    QVERIFY(member.isConnected());

    QCOMPARE(allMethods().size(), methodCount);
    QCOMPARE(methodsAnsweredWith(unknownMethod, member), allMethods());
    QCOMPARE(member.errorOf(QDBusMessage::createMethodCall(daemonName, QStringLiteral("/"), daemonName,
                                                           QStringLiteral("getHostName"))),
             QString());
}

void MachineScenarios::strangerMayCallNothing()
{
    BusUser stranger(QStringLiteral("stranger"), QString());
    QVERIFY(stranger.isConnected());

    QCOMPARE(methodsAnsweredWith(accessDenied, stranger), allMethods());
}

void MachineScenarios::strangerHearsTheSignals()
{
    BusUser stranger(QStringLiteral("stranger"), QString());
    SignalCounter heard;
    QVERIFY(stranger.connection().connect(daemonName, QStringLiteral("/"), daemonName,
                                          QStringLiteral("regionChanged"), &heard, SLOT(count())));

    QVERIFY(does(QStringLiteral("setLockRegion"), {true}));
    QVERIFY(does(QStringLiteral("setLockRegion"), {false}));

    QVERIFY(eventually([&] { return heard.counted() == 2; }));
}

void MachineScenarios::nobodyButRootOwnsTheNameOrReachesTheAgent()
{
    m_world.spoil();
    BusUser member(QStringLiteral("member"), QStringLiteral("netdev"));
    BusUser stranger(QStringLiteral("stranger"), QString());
    QCOMPARE(member.errorOf(agentCall()), accessDenied);
    QCOMPARE(stranger.errorOf(agentCall()), accessDenied);

    QVERIFY(daemon().stopAndWait());

    QVERIFY(!member.connection().registerService(daemonName));
    QCOMPARE(member.connection().lastError().name(), accessDenied);
    QVERIFY(!stranger.connection().registerService(daemonName));
    QCOMPARE(stranger.connection().lastError().name(), accessDenied);
}
