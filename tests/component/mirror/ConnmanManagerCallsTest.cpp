// What ConnmanManager asks of ConnMan beside the services, and its own signals.

#include "ConnmanManager.h"
#include "ManagerAnnouncements.h"
#include "MirrorWorld.h"
#include "Suite.h"

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
    return QDBusObjectPath(QStringLiteral("/agent"));
}

QVariant technologies(const QStringList &names)
{
    ConnmanServiceInfoList list;
    for (const QString &name : names) {
        list.append({QDBusObjectPath(QStringLiteral("/net/connman/technology/") + name), {}});
    }
    return QVariant::fromValue(list);
}

FaultKind notToday()
{
    return FaultKind::error(QStringLiteral("net.connman.Error.Failed"), QStringLiteral("Not \"today\""));
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
    QCOMPARE(manager.serviceName(), QStringLiteral("net.connman"));
    QCOMPARE(manager.serviceObject(), QStringLiteral("/"));
    QCOMPARE(manager.interfaceName(), QStringLiteral("net.connman.Manager"));
}

void ConnmanManagerCallsTest::signalsAndSlotsHaveTheirOrder()
{
    const QStringList expected{
        QStringLiteral("serviceChanged(std::shared_ptr<ConnmanService>)"),
        QStringLiteral("serviceStateChanged(std::shared_ptr<ConnmanService>)"),
        QStringLiteral("interfaceStateChanged(QString,ConnmanManager::InterfaceState)"),
        QStringLiteral("propertyChanged(QString,QDBusVariant)"),
        QStringLiteral("servicesChanged(ConnmanServiceInfoList,QList<QDBusObjectPath>)")};
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
    QCOMPARE(world.debugLines(ManagerLog), {QStringLiteral("ConnmanManager()")});
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
    const QString line =
        QStringLiteral("Unable to connect %1 signal for \"net.connman\" \"/\" \"net.connman.Manager\"");
    const QStringList expected{critical(ManagerLog, line.arg(QStringLiteral("PropertyChanged"))),
                               critical(ManagerLog, line.arg(QStringLiteral("ServicesChanged")))};
    QCOMPARE(world.complaints(), expected);
    world.log().clear();
    QVERIFY(!manager.updateServices());
    QCOMPARE(world.complaints(),
             {critical(ServicesLog,
                       QStringLiteral("Call to GetServices failed: \"Not connected to D-Bus server\""))});
}

void ConnmanManagerCallsTest::connmanHasItsTechnologies()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    QVERIFY(manager.hasTechnology(QStringLiteral("wifi")));
    world.simulator().removeTechnology(QStringLiteral("wifi"));
    QVERIFY(!manager.hasTechnology(QStringLiteral("wifi")));
    world.simulator().addTechnology(QStringLiteral("wifi"));
    QVERIFY(manager.hasTechnology(QStringLiteral("wifi")));
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanManagerCallsTest::technologyIsFoundByAPartOfItsPath_data()
{
    QTest::addColumn<QStringList>("listed");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");
    const QStringList both{QStringLiteral("ethernet"), QStringLiteral("wifi")};
    const QStringList wired{QStringLiteral("ethernet")};
    QTest::newRow("first") << both << QStringLiteral("ethernet") << true;
    QTest::newRow("last") << both << QStringLiteral("wifi") << true;
    QTest::newRow("not listed") << wired << QStringLiteral("wifi") << false;
    QTest::newRow("part of the name") << both << QStringLiteral("wi") << true;
    QTest::newRow("part of the path") << wired << QStringLiteral("/technology/eth") << true;
    QTest::newRow("other case") << both << QStringLiteral("WiFi") << false;
    QTest::newRow("longer name") << both << QStringLiteral("wifi5") << false;
    QTest::newRow("name within a longer one")
        << QStringList{QStringLiteral("p2p_wifi_x")} << QStringLiteral("wifi") << true;
    QTest::newRow("empty") << wired << QString() << true;
    QTest::newRow("empty, none listed") << QStringList() << QString() << false;
    QTest::newRow("none listed") << QStringList() << QStringLiteral("wifi") << false;
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
    manager.hasTechnology(QStringLiteral("wifi"));
    QCOMPARE(world.simulator().calls(), {QStringLiteral("/ net.connman.Manager.GetTechnologies()")});
}

void ConnmanManagerCallsTest::failedTechnologyQueryIsOneLineAndFalse()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    const Fault fault = world.simulator().injectFault(ManagerInterface, GetTechnologies, notToday());
    QVERIFY(!manager.hasTechnology(QString()));
    QCOMPARE(
        world.complaints(),
        {critical(TechnologyLog, QStringLiteral("Call to GetTechnologies failed: \"Not \\\"today\\\"\""))});
}

void ConnmanManagerCallsTest::vanishedConnmanHasNoTechnology()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    const Fault fault = world.simulator().injectFault(ManagerInterface, GetTechnologies, FaultKind::vanish());
    QVERIFY(!manager.hasTechnology(QString()));
    QCOMPARE(world.complaints().size(), 1);
    QVERIFY(world.complaints().constFirst().startsWith(
        critical(TechnologyLog, QStringLiteral("Call to GetTechnologies failed: "))));
}

void ConnmanManagerCallsTest::registeringTheAgentIsOneCall()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    QVERIFY(manager.registerAgent(agentPath()));
    QCOMPARE(world.simulator().calls(),
             {QStringLiteral("/ net.connman.Manager.RegisterAgent(objectpath \"/agent\")")});
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
                       QStringLiteral(
                           "Unable to call RegisterAgent(\"/agent\") on \"net.connman\": Not \"today\""))});
}

void ConnmanManagerCallsTest::agentRegisteredTwiceIsOneLineAndFalse()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    QVERIFY(manager.registerAgent(agentPath()));
    QVERIFY(!manager.registerAgent(agentPath()));
    QCOMPARE(world.complaints(),
             {critical(ManagerLog,
                       QStringLiteral(
                           "Unable to call RegisterAgent(\"/agent\") on \"net.connman\": Already exists"))});
}

void ConnmanManagerCallsTest::agentWithoutConnmanIsOneLineAndFalse()
{
    MirrorWorld world;
    ConnmanManager manager(MirrorWorld::noConnection(), nullptr);
    world.log().clear();
    QVERIFY(!manager.registerAgent(agentPath()));
    QCOMPARE(
        world.complaints(),
        {critical(ManagerLog, QStringLiteral("Unable to call RegisterAgent(\"/agent\") on \"net.connman\": "
                                             "Not connected to D-Bus server"))});
}

void ConnmanManagerCallsTest::propertyOfTheManagerIsOnlyLogged()
{
    MirrorWorld world;
    RecordedManager recorded(world);
    recorded.forget();
    world.simulator().emitSignal(
        QStringLiteral("/"), ManagerInterface, QStringLiteral("PropertyChanged"),
        {QStringLiteral("State"), QVariant::fromValue(QDBusVariant(QStringLiteral("online")))});
    world.deliver();
    QCOMPARE(world.debugLines(QStringLiteral("ConnmanManager.properties")),
             {QStringLiteral("PropertyChanged( \"State\" ,  QVariant(QString, \"online\") )")});
    QCOMPARE(world.log().messages().size(), 1);
    QCOMPARE(world.simulator().calls(), QStringList());
    QCOMPARE(recorded.announcements.lines(), QStringList());
    QCOMPARE(world.complaints(), QStringList());
}

static const Suite<ConnmanManagerCallsTest> suite;
#include "ConnmanManagerCallsTest.moc"
