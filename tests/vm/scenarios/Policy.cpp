#include "BusCall.h"
#include "BusUser.h"
#include "EventWait.h"
#include "MachineScenarios.h"
#include "Text.h"

#include <QDBusConnectionInterface>
#include <QFile>
#include <QTest>
#include <QXmlStreamReader>

using test_support::eventually;

namespace {

const QString accessDenied = "org.freedesktop.DBus.Error.AccessDenied"_s;
const QString unknownMethod = "org.freedesktop.DBus.Error.UnknownMethod"_s;
constexpr int methodCount = 34;

QStringList allMethods()
{
    QFile file("/usr/share/dbus-1/interfaces/com.tactora.NetworkManager.xml"_s);
    QStringList names;
    if (file.open(QIODevice::ReadOnly)) {
        QXmlStreamReader reader(&file);
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement &&
                reader.name() == QLatin1String("method")) {
                names.append(reader.attributes().value("name"_s).toString());
            }
        }
    }
    return names;
}

/// With arguments that no method has: whom the bus lets through hears from the daemon itself that there is no
/// such method, and nothing is done.
QDBusMessage harmlessCall(const QString &method)
{
    QDBusMessage call = QDBusMessage::createMethodCall(daemonName, "/"_s, daemonName, method);
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
    return QDBusMessage::createMethodCall(daemonName, "/agent"_s, "net.connman.Agent"_s, "Cancel"_s);
}

} // namespace

void MachineScenarios::memberOfTheGroupMayCallEverything()
{
    BusUser member("member"_s, "netdev"_s);
    QVERIFY(member.isConnected());

    QCOMPARE(allMethods().size(), methodCount);
    QCOMPARE(methodsAnsweredWith(unknownMethod, member), allMethods());
    QCOMPARE(member.errorOf(QDBusMessage::createMethodCall(daemonName, "/"_s, daemonName, "getHostName"_s)),
             QString());
}

void MachineScenarios::strangerMayCallNothing()
{
    BusUser stranger("stranger"_s, QString());
    QVERIFY(stranger.isConnected());

    QCOMPARE(methodsAnsweredWith(accessDenied, stranger), allMethods());
}

void MachineScenarios::strangerHearsTheSignals()
{
    BusUser stranger("stranger"_s, QString());
    SignalCounter heard;
    QVERIFY(stranger.connection().connect(daemonName, "/"_s, daemonName, "regionChanged"_s, &heard,
                                          SLOT(count())));

    QVERIFY(does("setLockRegion", true));
    QVERIFY(does("setLockRegion", false));

    QVERIFY(eventually([&] { return heard.counted() == 2; }));
}

void MachineScenarios::nobodyButRootOwnsTheNameOrReachesTheAgent()
{
    m_world.spoil();
    BusUser member("member"_s, "netdev"_s);
    BusUser stranger("stranger"_s, QString());
    QCOMPARE(member.errorOf(agentCall()), accessDenied);
    QCOMPARE(stranger.errorOf(agentCall()), accessDenied);

    QVERIFY(m_world.stopDaemon());

    QVERIFY(!member.connection().registerService(daemonName));
    QCOMPARE(member.connection().lastError().name(), accessDenied);
    QVERIFY(!stranger.connection().registerService(daemonName));
    QCOMPARE(stranger.connection().lastError().name(), accessDenied);
}
