// What ConnmanManager asks of ConnMan beside the services, and its own signals.

#include "ConnmanManager.h"
#include "ManagerAnnouncements.h"
#include "MirrorWorld.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

using test_support::Fault;
using test_support::FaultKind;

namespace {

const QLatin1String ManagerLog("ConnmanManager");
const QLatin1String ServicesLog("ConnmanManager.services");
const QLatin1String TechnologyLog("ConnmanManager.technology");
const QLatin1String ManagerInterface("net.connman.Manager");
const QLatin1String GetTechnologies("GetTechnologies");
const QLatin1String RegisterAgent("RegisterAgent");

QDBusObjectPath agentPath()
{
    return QDBusObjectPath("/agent"_s);
}

QVariant technologies(const QStringList &names)
{
    ConnmanServiceInfoList list;
    for (const QString &name : names) {
        list.append({QDBusObjectPath("/net/connman/technology/"_s + name), {}});
    }
    return QVariant::fromValue(list);
}

FaultKind notToday()
{
    return FaultKind::error("net.connman.Error.Failed"_s, "Not \"today\""_s);
}

} // namespace

class ConnmanManagerCallsTest : public QObject
{
    Q_OBJECT

private slots:
    void namesAreConnmans();
    void signalsAndSlotsHaveTheirOrder();
    void interfaceStateHasItsMetaTypeName();
    void constructionLogsOneDebugLine();
    void constructionLogsBeforeItSubscribes();
    void failedSubscriptionsAreOneLineEach();

    void connmanHasItsTechnologies();
    void technologyIsFoundByAPartOfItsPath_data();
    void technologyIsFoundByAPartOfItsPath();
    void technologyQueryIsOneCall();
    void failedTechnologyQueryIsOneLineAndFalse();
    void vanishedConnmanHasNoTechnology();

    void registeringTheAgentIsOneCall();
    void registeredAgentIsKnownToConnman();
    void refusedAgentIsOneLineAndFalse();
    void agentRegisteredTwiceIsOneLineAndFalse();
    void agentWithoutConnmanIsOneLineAndFalse();

    void propertyOfTheManagerIsOnlyLogged();
};

void ConnmanManagerCallsTest::namesAreConnmans()
{
    MirrorWorld world;
    const ConnmanManager manager(world.connection(), nullptr);
    QCOMPARE(manager.serviceName(), "net.connman"_s);
    QCOMPARE(manager.serviceObject(), "/"_s);
    QCOMPARE(manager.interfaceName(), "net.connman.Manager"_s);
}

void ConnmanManagerCallsTest::signalsAndSlotsHaveTheirOrder()
{
    const QStringList expected{"serviceChanged(std::shared_ptr<ConnmanService>)"_s,
                               "serviceStateChanged(std::shared_ptr<ConnmanService>)"_s,
                               "interfaceStateChanged(QString,ConnmanManager::InterfaceState)"_s,
                               "propertyChanged(QString,QDBusVariant)"_s,
                               "servicesChanged(ConnmanServiceInfoList,QList<QDBusObjectPath>)"_s};
    QCOMPARE(ownMethods(ConnmanManager::staticMetaObject), expected);
}

void ConnmanManagerCallsTest::interfaceStateHasItsMetaTypeName()
{
    MirrorWorld world;
    const ConnmanManager manager(world.connection(), nullptr);
    QCOMPARE(QMetaType::type("InterfaceState"), qMetaTypeId<ConnmanManager::InterfaceState>());
}

void ConnmanManagerCallsTest::constructionLogsOneDebugLine()
{
    MirrorWorld world;
    const ConnmanManager manager(world.connection(), nullptr);
    QCOMPARE(world.debugLines(ManagerLog), {"ConnmanManager()"_s});
    QCOMPARE(world.log().messages().size(), 1);
    QCOMPARE(world.simulator().calls(), QStringList());
}

void ConnmanManagerCallsTest::constructionLogsBeforeItSubscribes()
{
    MirrorWorld world;
    const ConnmanManager manager(MirrorWorld::noConnection(), nullptr);
    const auto messages = world.log().messages();
    QCOMPARE(messages.size(), 3);
    QCOMPARE(messages.constFirst().type, QtDebugMsg);
}

void ConnmanManagerCallsTest::failedSubscriptionsAreOneLineEach()
{
    MirrorWorld world;
    ConnmanManager manager(MirrorWorld::noConnection(), nullptr);
    const QString line = "Unable to connect %1 signal for \"net.connman\" \"/\" \"net.connman.Manager\""_s;
    const QStringList expected{critical(ManagerLog, line.arg("PropertyChanged"_s)),
                               critical(ManagerLog, line.arg("ServicesChanged"_s))};
    QCOMPARE(world.complaints(), expected);
    world.log().clear();
    QVERIFY(!manager.updateServices());
    QCOMPARE(world.complaints(),
             {critical(ServicesLog, "Call to GetServices failed: \"Not connected to D-Bus server\""_s)});
}

void ConnmanManagerCallsTest::connmanHasItsTechnologies()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    QVERIFY(manager.hasTechnology("wifi"_s));
    world.simulator().removeTechnology("wifi"_s);
    QVERIFY(!manager.hasTechnology("wifi"_s));
    world.simulator().addTechnology("wifi"_s);
    QVERIFY(manager.hasTechnology("wifi"_s));
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanManagerCallsTest::technologyIsFoundByAPartOfItsPath_data()
{
    QTest::addColumn<QStringList>("listed");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");
    const QStringList both{"ethernet"_s, "wifi"_s};
    const QStringList wired{"ethernet"_s};
    QTest::newRow("first") << both << "ethernet"_s << true;
    QTest::newRow("last") << both << "wifi"_s << true;
    QTest::newRow("not listed") << wired << "wifi"_s << false;
    QTest::newRow("part of the name") << both << "wi"_s << true;
    QTest::newRow("part of the path") << wired << "/technology/eth"_s << true;
    QTest::newRow("other case") << both << "WiFi"_s << false;
    QTest::newRow("longer name") << both << "wifi5"_s << false;
    QTest::newRow("name within a longer one") << QStringList{"p2p_wifi_x"_s} << "wifi"_s << true;
    QTest::newRow("empty") << wired << QString() << true;
    QTest::newRow("empty, none listed") << QStringList() << QString() << false;
    QTest::newRow("none listed") << QStringList() << "wifi"_s << false;
}

void ConnmanManagerCallsTest::technologyIsFoundByAPartOfItsPath()
{
    QFETCH(QStringList, listed);
    QFETCH(QString, name);
    QFETCH(bool, expected);
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    const Fault fault = world.simulator().injectFault(ManagerInterface, GetTechnologies,
                                                      FaultKind::reply({technologies(listed)}));
    QCOMPARE(manager.hasTechnology(name), expected);
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanManagerCallsTest::technologyQueryIsOneCall()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    manager.hasTechnology("wifi"_s);
    QCOMPARE(world.simulator().calls(), {"/ net.connman.Manager.GetTechnologies()"_s});
}

void ConnmanManagerCallsTest::failedTechnologyQueryIsOneLineAndFalse()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    const Fault fault = world.simulator().injectFault(ManagerInterface, GetTechnologies, notToday());
    QVERIFY(!manager.hasTechnology(QString()));
    QCOMPARE(world.complaints(),
             {critical(TechnologyLog, "Call to GetTechnologies failed: \"Not \\\"today\\\"\""_s)});
}

void ConnmanManagerCallsTest::vanishedConnmanHasNoTechnology()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    const Fault fault = world.simulator().injectFault(ManagerInterface, GetTechnologies, FaultKind::vanish());
    QVERIFY(!manager.hasTechnology(QString()));
    QCOMPARE(world.complaints().size(), 1);
    QVERIFY(world.complaints().constFirst().startsWith(
        critical(TechnologyLog, "Call to GetTechnologies failed: "_s)));
}

void ConnmanManagerCallsTest::registeringTheAgentIsOneCall()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    QVERIFY(manager.registerAgent(agentPath()));
    QCOMPARE(world.simulator().calls(), {"/ net.connman.Manager.RegisterAgent(objectpath \"/agent\")"_s});
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanManagerCallsTest::registeredAgentIsKnownToConnman()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    QVERIFY(manager.registerAgent(agentPath()));
    QCOMPARE(world.simulator().agents(), {agentPath()});
}

void ConnmanManagerCallsTest::refusedAgentIsOneLineAndFalse()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    const Fault fault = world.simulator().injectFault(ManagerInterface, RegisterAgent, notToday());
    QVERIFY(!manager.registerAgent(agentPath()));
    QCOMPARE(world.complaints(),
             {critical(ManagerLog,
                       "Unable to call RegisterAgent(\"/agent\") on \"net.connman\": Not \"today\""_s)});
}

void ConnmanManagerCallsTest::agentRegisteredTwiceIsOneLineAndFalse()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    QVERIFY(manager.registerAgent(agentPath()));
    QVERIFY(!manager.registerAgent(agentPath()));
    QCOMPARE(world.complaints(),
             {critical(ManagerLog,
                       "Unable to call RegisterAgent(\"/agent\") on \"net.connman\": Already exists"_s)});
}

void ConnmanManagerCallsTest::agentWithoutConnmanIsOneLineAndFalse()
{
    MirrorWorld world;
    ConnmanManager manager(MirrorWorld::noConnection(), nullptr);
    world.log().clear();
    QVERIFY(!manager.registerAgent(agentPath()));
    QCOMPARE(world.complaints(),
             {critical(ManagerLog, "Unable to call RegisterAgent(\"/agent\") on \"net.connman\": "
                                   "Not connected to D-Bus server"_s)});
}

void ConnmanManagerCallsTest::propertyOfTheManagerIsOnlyLogged()
{
    MirrorWorld world;
    RecordedManager recorded(world);
    recorded.forget();
    world.simulator().emitSignal("/"_s, ManagerInterface, "PropertyChanged"_s,
                                 {"State"_s, QVariant::fromValue(QDBusVariant("online"_s))});
    world.deliver();
    QCOMPARE(world.debugLines("ConnmanManager.properties"_s),
             {"PropertyChanged( \"State\" ,  QVariant(QString, \"online\") )"_s});
    QCOMPARE(world.log().messages().size(), 1);
    QCOMPARE(world.simulator().calls(), QStringList());
    QCOMPARE(recorded.announcements.lines(), QStringList());
    QCOMPARE(world.complaints(), QStringList());
}

static const Suite<ConnmanManagerCallsTest> suite;
#include "ConnmanManagerCallsTest.moc"
