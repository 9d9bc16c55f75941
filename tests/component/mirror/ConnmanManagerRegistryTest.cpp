// The registry of services: how ConnmanManager fills it and keeps it in step with ConnMan.

#include "ConnmanManager.h"
#include "ManagerAnnouncements.h"
#include "MirrorWorld.h"
#include "Suite.h"
#include "Text.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTest>

using test_support::Fault;
using test_support::FaultKind;
using State = ConnmanService::State;

namespace {

const QLatin1String A("wifi_020000000000_61_managed_psk");
const QLatin1String B("wifi_020000000000_62_managed_none");
const QLatin1String Wired("ethernet_020000000001_cable");
const QLatin1String ServicesLog("ConnmanManager.services");
const QLatin1String GetServicesCall("/ net.connman.Manager.GetServices()");

const QVariantMap &idle()
{
    static const QVariantMap properties{{"State"_s, "idle"_s}};
    return properties;
}

/// A manager that has filled its registry, with nothing recorded yet of what comes next.
struct FilledManager : RecordedManager
{
    explicit FilledManager(MirrorWorld &mirrorWorld)
        : RecordedManager(mirrorWorld)
    {
        forget();
    }
};

QString path(const QString &identifier)
{
    return MirrorWorld::pathOf(identifier);
}

QString nonExistent(const QString &servicePath)
{
    return warning(ServicesLog, "Trying to remove non-existant service \"%1\""_s.arg(servicePath));
}

} // namespace

class ConnmanManagerRegistryTest : public QObject
{
    Q_OBJECT

private slots:
    void registryIsEmptyUntilTheNextPassOfTheEventLoop();
    void firstFillAnnouncesEveryServiceToReceiversConnectedAfterConstruction();
    void firstFillReadsEachServiceOnce();
    void updateAddsWhatIsNewAndLeavesTheRestAlone();
    void updateKeepsServicesThatConnmanNoLongerLists();
    void failedUpdateIsOneLineAndChangesNothing();

    void addedServiceIsAnnouncedFilledButNotYetRegistered();
    void addingAServiceAnnouncesItsStateFirst();
    void addingAServiceLogsOneDebugLine();
    void addingAServiceIsLoggedBeforeTheServiceIsMade();
    void addingAKnownServiceDoesNothing();
    void addingAServiceThatConnmanDoesNotHaveRegistersItStateless();

    void removingAServiceOnlyForgetsIt();
    void removingAServiceLogsOneDebugLine();
    void removingAnUnknownServiceIsAWarningAndNothingElse();
    void removedServiceThatIsHeldStillReportsItsState();
    void removedServiceOutlivesTheRegistryAndTheManager();
    void removedServiceIsReleasedThoughItsSuccessorKeepsChanging();
};

void ConnmanManagerRegistryTest::registryIsEmptyUntilTheNextPassOfTheEventLoop()
{
    MirrorWorld world;
    world.addService(A);
    const ConnmanManager manager(world.connection(), nullptr);
    QVERIFY(manager.services().isEmpty());
    QCOMPARE(world.simulator().calls(), QStringList());
    QCoreApplication::processEvents();
    QCOMPARE(registeredPaths(manager), {path(A)});
}

void ConnmanManagerRegistryTest::firstFillAnnouncesEveryServiceToReceiversConnectedAfterConstruction()
{
    MirrorWorld world;
    world.addService(A, idle());
    world.addService(B, idle());
    ConnmanManager manager(world.connection(), nullptr);
    const ManagerAnnouncements announcements(manager);
    QTRY_COMPARE(manager.services().size(), 2);
    const QStringList services = announcements.lines("added"_s);
    QCOMPARE(services.size(), 2);
    QVERIFY(services.contains(added(A)));
    QVERIFY(services.contains(added(B)));
}

void ConnmanManagerRegistryTest::firstFillReadsEachServiceOnce()
{
    MirrorWorld world;
    world.addService(A);
    world.addService(Wired);
    const QStringList inConnmansOrder = world.simulator().services();
    const ConnmanManager manager(world.connection(), nullptr);
    QCoreApplication::processEvents();
    QStringList expected{GetServicesCall};
    for (const QString &identifier : inConnmansOrder) {
        expected << MirrorWorld::getPropertiesCall(path(identifier));
    }
    QCOMPARE(world.simulator().calls(), expected);
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanManagerRegistryTest::updateAddsWhatIsNewAndLeavesTheRestAlone()
{
    MirrorWorld world;
    world.addService(A, idle());
    FilledManager filled(world);
    world.simulator().addService(B, idle());
    QVERIFY(filled.manager.updateServices());
    const QStringList expectedCalls{GetServicesCall, MirrorWorld::getPropertiesCall(path(B))};
    QCOMPARE(world.simulator().calls(), expectedCalls);
    const QStringList expectedPaths{path(A), path(B)};
    QCOMPARE(registeredPaths(filled.manager), expectedPaths);
    QCOMPARE(filled.announcements.lines("added"_s), {added(B)});
}

void ConnmanManagerRegistryTest::updateKeepsServicesThatConnmanNoLongerLists()
{
    MirrorWorld world;
    world.addService(A, idle());
    FilledManager filled(world);
    world.simulator().removeService(A);
    QVERIFY(filled.manager.updateServices());
    QCOMPARE(registeredPaths(filled.manager), {path(A)});
}

void ConnmanManagerRegistryTest::failedUpdateIsOneLineAndChangesNothing()
{
    MirrorWorld world;
    world.addService(A, idle());
    FilledManager filled(world);
    // An interface's new state that has yet to settle: any update would report it.
    world.simulator().setServiceProperty(A, "State"_s, "ready"_s, true);
    world.emitPropertyChanged(path(A), "State"_s, "ready"_s);
    world.deliver();
    filled.forget();
    const Fault fault =
        world.simulator().injectFault("net.connman.Manager"_s, "GetServices"_s,
                                      FaultKind::error("net.connman.Error.Failed"_s, "Not today"_s));
    QVERIFY(!filled.manager.updateServices());
    QCOMPARE(world.complaints(), {critical(ServicesLog, "Call to GetServices failed: \"Not today\""_s)});
    QCOMPARE(world.simulator().calls(), {QString(GetServicesCall)});
    QCOMPARE(registeredPaths(filled.manager), {path(A)});
    QCOMPARE(filled.announcements.lines(), QStringList());
    QVERIFY(filled.manager.updateServices());
    QCOMPARE(filled.interfaceLines().size(), 1);
}

void ConnmanManagerRegistryTest::addedServiceIsAnnouncedFilledButNotYetRegistered()
{
    MirrorWorld world;
    FilledManager filled(world);
    const QDBusObjectPath servicePath = world.addService(A, {{"Name"_s, "Home"_s}});
    filled.manager.remService(servicePath);
    QString seenName;
    int seenServices = -1;
    connect(&filled.manager, &ConnmanManager::serviceChanged, this,
            [&](const std::shared_ptr<ConnmanService> &service) {
                seenName = service->name();
                seenServices = filled.manager.services().size();
            });
    QVERIFY(filled.manager.addService(servicePath));
    QCOMPARE(seenName, "Home"_s);
    QCOMPARE(seenServices, 0);
    QCOMPARE(registeredPaths(filled.manager), {servicePath.path()});
}

void ConnmanManagerRegistryTest::addingAServiceAnnouncesItsStateFirst()
{
    MirrorWorld world;
    world.addService(A, idle());
    ConnmanManager manager(world.connection(), nullptr);
    const ManagerAnnouncements announcements(manager);
    QVERIFY(manager.addService(QDBusObjectPath(path(A))));
    const QStringList expected{stateOf(A, State::Idle), added(A)};
    QCOMPARE(announcements.lines(), expected);
    QCOMPARE(world.simulator().calls(), {MirrorWorld::getPropertiesCall(path(A))});
}

void ConnmanManagerRegistryTest::addingAServiceLogsOneDebugLine()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    manager.addService(QDBusObjectPath(path(A)));
    QCOMPARE(world.debugLines(ServicesLog), {"Adding service \"%1\""_s.arg(path(A))});
}

void ConnmanManagerRegistryTest::addingAServiceIsLoggedBeforeTheServiceIsMade()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    world.log().clear();
    manager.addService(QDBusObjectPath(path(A)));
    const auto messages = world.log().messages();
    QCOMPARE(messages.at(0).category, QString(ServicesLog));
    QCOMPARE(messages.at(1).category, "ConnmanService"_s);
}

void ConnmanManagerRegistryTest::addingAKnownServiceDoesNothing()
{
    MirrorWorld world;
    world.addService(A, idle());
    FilledManager filled(world);
    const auto before = filled.manager.services();
    QVERIFY(!filled.manager.addService(QDBusObjectPath(path(A))));
    QCOMPARE(filled.manager.services(), before);
    QCOMPARE(world.simulator().calls(), QStringList());
    QCOMPARE(filled.announcements.lines(), QStringList());
    QVERIFY(world.log().messages().isEmpty());
}

void ConnmanManagerRegistryTest::addingAServiceThatConnmanDoesNotHaveRegistersItStateless()
{
    MirrorWorld world;
    ConnmanManager manager(world.connection(), nullptr);
    const ManagerAnnouncements announcements(manager);
    QVERIFY(manager.addService(QDBusObjectPath(path(A))));
    QCOMPARE(announcements.lines(), {added(A)});
    QCOMPARE(registeredPaths(manager), {path(A)});
    QCOMPARE(world.complaints(), {critical("ConnmanService.properties"_s,
                                           "Service-properties doesn't contain a value for State"_s)});
}

void ConnmanManagerRegistryTest::removingAServiceOnlyForgetsIt()
{
    MirrorWorld world;
    world.addService(A, {{"State"_s, "ready"_s}});
    FilledManager filled(world);
    filled.manager.remService(QDBusObjectPath(path(A)));
    QVERIFY(filled.manager.services().isEmpty());
    QCOMPARE(filled.announcements.lines(), QStringList());
    QCOMPARE(world.simulator().calls(), QStringList());
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanManagerRegistryTest::removingAServiceLogsOneDebugLine()
{
    MirrorWorld world;
    world.addService(A, idle());
    FilledManager filled(world);
    filled.manager.remService(QDBusObjectPath(path(A)));
    QCOMPARE(world.debugLines(ServicesLog), {"Removing service \"%1\""_s.arg(path(A))});
}

void ConnmanManagerRegistryTest::removingAnUnknownServiceIsAWarningAndNothingElse()
{
    MirrorWorld world;
    world.addService(A, idle());
    FilledManager filled(world);
    filled.manager.remService(QDBusObjectPath(path(B)));
    QCOMPARE(world.complaints(), {nonExistent(path(B))});
    QCOMPARE(world.log().messages().size(), 1);
    QCOMPARE(registeredPaths(filled.manager), {path(A)});
    QCOMPARE(filled.announcements.lines(), QStringList());
    QCOMPARE(world.simulator().calls(), QStringList());
}

void ConnmanManagerRegistryTest::removedServiceThatIsHeldStillReportsItsState()
{
    MirrorWorld world;
    world.addService(A, idle());
    FilledManager filled(world);
    const std::shared_ptr<ConnmanService> held = filled.manager.services().constFirst();
    filled.manager.remService(QDBusObjectPath(path(A)));
    world.simulator().setServiceProperty(A, "State"_s, "association"_s);
    world.deliver();
    QVERIFY(filled.announcements.lines().contains(stateOf(A, State::Association)));
}

void ConnmanManagerRegistryTest::removedServiceOutlivesTheRegistryAndTheManager()
{
    MirrorWorld world;
    world.addService(A, {{"Name"_s, "Home"_s}});
    auto filled = std::make_unique<FilledManager>(world);
    const std::shared_ptr<ConnmanService> held = filled->manager.services().constFirst();
    filled->manager.remService(QDBusObjectPath(path(A)));
    QCOMPARE(held->name(), "Home"_s);
    filled.reset();
    QVERIFY(held->dbusUpdateProperties());
    QCOMPARE(held->name(), "Home"_s);
}

void ConnmanManagerRegistryTest::removedServiceIsReleasedThoughItsSuccessorKeepsChanging()
{
    constexpr int latestMs = 10000; // two seconds would do, on a machine that does nothing else
    constexpr int pauseMs = 200;
    const QString state = "State"_s;
    const QString nextState = "association"_s;
    MirrorWorld world;
    world.addService(A, idle());
    FilledManager filled(world);
    const std::weak_ptr<ConnmanService> removed = filled.manager.services().constFirst();
    world.simulator().setServiceProperty(A, state, nextState);
    world.deliver();
    filled.manager.remService(QDBusObjectPath(path(A)));
    filled.manager.addService(QDBusObjectPath(path(A)));
    QVERIFY2(!removed.expired(), "the change of its state is still settling");

    const QDeadlineTimer deadline(latestMs);
    bool isReleased = false;
    for (bool goesOn = false; !isReleased && !deadline.hasExpired(); goesOn = !goesOn) {
        world.simulator().setServiceProperty(A, state, goesOn ? nextState : "idle"_s);
        isReleased = QTest::qWaitFor([&removed] { return removed.expired(); }, pauseMs);
    }
    QVERIFY(isReleased);
    QCOMPARE(registeredPaths(filled.manager), {path(A)});
}

static const Suite<ConnmanManagerRegistryTest> suite;
#include "ConnmanManagerRegistryTest.moc"
