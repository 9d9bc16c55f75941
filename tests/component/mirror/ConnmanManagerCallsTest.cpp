// What ConnmanManager asks of ConnMan beside the services, and its own signals.

#include "ConnmanFixture.h"
#include "ConnmanManager.h"
#include "ManagerScene.h"
#include "OwnMethods.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

using namespace test_support;

namespace {

const QLatin1String ManagerLog("ConnmanManager");
const QLatin1String TechnologyLog("ConnmanManager.technology");
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

class ConnmanManagerCallsTest : public ConnmanFixture
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

    void registeringTheAgentIsOneCallThatConnmanRemembers();
    void refusedAgentIsOneLineAndFalse();
    void agentRegisteredTwiceIsOneLineAndFalse();
    void agentWithoutConnmanIsOneLineAndFalse();

    void propertyOfTheManagerIsOnlyLogged();
};

void ConnmanManagerCallsTest::namesAreConnmans()
{
    const ConnmanManager manager(connection(), nullptr);
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
    const ConnmanManager manager(connection(), nullptr);
    QCOMPARE(QMetaType::type("InterfaceState"), qMetaTypeId<ConnmanManager::InterfaceState>());
}

void ConnmanManagerCallsTest::constructionLogsOneDebugLine()
{
    const ConnmanManager manager(connection(), nullptr);
    QCOMPARE(debugLines(ManagerLog), {"ConnmanManager()"_s});
    QCOMPARE(log().messages().size(), 1);
    QCOMPARE(calls(), QStringList());
}

void ConnmanManagerCallsTest::constructionLogsBeforeItSubscribes()
{
    const ConnmanManager manager(noConnection(), nullptr);
    const auto messages = log().messages();
    QCOMPARE(messages.size(), 3);
    QCOMPARE(messages.constFirst().type, QtDebugMsg);
}

void ConnmanManagerCallsTest::failedSubscriptionsAreOneLineEach()
{
    ConnmanManager manager(noConnection(), nullptr);
    const QString line = "Unable to connect %1 signal for \"net.connman\" \"/\" \"net.connman.Manager\""_s;
    const QStringList expected{critical(ManagerLog, line.arg("PropertyChanged"_s)),
                               critical(ManagerLog, line.arg("ServicesChanged"_s))};
    QCOMPARE(complaints(), expected);
    log().clear();
    QVERIFY(!manager.updateServices());
    QCOMPARE(complaints(),
             {critical(ServicesLog, "Call to GetServices failed: \"Not connected to D-Bus server\""_s)});
}

void ConnmanManagerCallsTest::connmanHasItsTechnologies()
{
    ConnmanManager manager(connection(), nullptr);
    QVERIFY(manager.hasTechnology("wifi"_s));
    connman().removeTechnology("wifi"_s);
    QVERIFY(!manager.hasTechnology("wifi"_s));
    connman().addTechnology("wifi"_s);
    QVERIFY(manager.hasTechnology("wifi"_s));
    QCOMPARE(complaints(), QStringList());
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
    ConnmanManager manager(connection(), nullptr);
    const Fault fault =
        connman().injectFault(ManagerInterface, GetTechnologies, FaultKind::reply({technologies(listed)}));
    QCOMPARE(manager.hasTechnology(name), expected);
    QCOMPARE(complaints(), QStringList());
}

void ConnmanManagerCallsTest::technologyQueryIsOneCall()
{
    ConnmanManager manager(connection(), nullptr);
    manager.hasTechnology("wifi"_s);
    QCOMPARE(calls(), {"/ net.connman.Manager.GetTechnologies()"_s});
}

void ConnmanManagerCallsTest::failedTechnologyQueryIsOneLineAndFalse()
{
    ConnmanManager manager(connection(), nullptr);
    const Fault fault = connman().injectFault(ManagerInterface, GetTechnologies, notToday());
    QVERIFY(!manager.hasTechnology(QString()));
    QCOMPARE(complaints(),
             {critical(TechnologyLog, "Call to GetTechnologies failed: \"Not \\\"today\\\"\""_s)});
}

void ConnmanManagerCallsTest::vanishedConnmanHasNoTechnology()
{
    ConnmanManager manager(connection(), nullptr);
    const Fault fault = connman().injectFault(ManagerInterface, GetTechnologies, FaultKind::vanish());
    QVERIFY(!manager.hasTechnology(QString()));
    QCOMPARE(complaints().size(), 1);
    QVERIFY(
        complaints().constFirst().startsWith(critical(TechnologyLog, "Call to GetTechnologies failed: "_s)));
}

void ConnmanManagerCallsTest::registeringTheAgentIsOneCallThatConnmanRemembers()
{
    ConnmanManager manager(connection(), nullptr);
    QVERIFY(manager.registerAgent(agentPath()));
    QCOMPARE(calls(), {"/ net.connman.Manager.RegisterAgent(objectpath \"/agent\")"_s});
    QCOMPARE(complaints(), QStringList());
    QCOMPARE(connman().agents(), {agentPath()});
}

void ConnmanManagerCallsTest::refusedAgentIsOneLineAndFalse()
{
    ConnmanManager manager(connection(), nullptr);
    const Fault fault = connman().injectFault(ManagerInterface, RegisterAgent, notToday());
    QVERIFY(!manager.registerAgent(agentPath()));
    QCOMPARE(complaints(),
             {critical(ManagerLog,
                       "Unable to call RegisterAgent(\"/agent\") on \"net.connman\": Not \"today\""_s)});
}

void ConnmanManagerCallsTest::agentRegisteredTwiceIsOneLineAndFalse()
{
    ConnmanManager manager(connection(), nullptr);
    QVERIFY(manager.registerAgent(agentPath()));
    QVERIFY(!manager.registerAgent(agentPath()));
    QCOMPARE(complaints(),
             {critical(ManagerLog,
                       "Unable to call RegisterAgent(\"/agent\") on \"net.connman\": Already exists"_s)});
}

void ConnmanManagerCallsTest::agentWithoutConnmanIsOneLineAndFalse()
{
    ConnmanManager manager(noConnection(), nullptr);
    log().clear();
    QVERIFY(!manager.registerAgent(agentPath()));
    QCOMPARE(complaints(),
             {critical(ManagerLog, "Unable to call RegisterAgent(\"/agent\") on \"net.connman\": "
                                   "Not connected to D-Bus server"_s)});
}

void ConnmanManagerCallsTest::propertyOfTheManagerIsOnlyLogged()
{
    ManagerScene recorded(*this);
    recorded.forget();
    connman().emitSignal("/"_s, ManagerInterface, "PropertyChanged"_s,
                         {"State"_s, QVariant::fromValue(QDBusVariant("online"_s))});
    deliver();
    QCOMPARE(debugLines("ConnmanManager.properties"_s),
             {"PropertyChanged( \"State\" ,  QVariant(QString, \"online\") )"_s});
    QCOMPARE(log().messages().size(), 1);
    QCOMPARE(calls(), QStringList());
    QCOMPARE(recorded.announcements.lines(), QStringList());
    QCOMPARE(complaints(), QStringList());
}

static const Suite<ConnmanManagerCallsTest> connmanManagerCallsTest;
#include "ConnmanManagerCallsTest.moc"
