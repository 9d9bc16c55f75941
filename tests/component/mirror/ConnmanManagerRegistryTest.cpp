// The registry of services: how ConnmanManager fills it and keeps it in step with ConnMan.

#include "ConnmanFixture.h"
#include "ConnmanManager.h"
#include "ManagerScene.h"
#include "Suite.h"
#include "Text.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTest>

using namespace test_support;

namespace {

const QLatin1String GetServicesCall("/ net.connman.Manager.GetServices()");

} // namespace

class ConnmanManagerRegistryTest : public ConnmanFixture
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
    void addingAServiceIsOneLineBeforeTheServiceIsMade();
    void addingAKnownServiceDoesNothing();
    void addingAServiceThatConnmanDoesNotHaveRegistersItStateless();

    void removingAServiceOnlyForgetsItWithOneLine();
    void removingAnUnknownServiceIsAWarningAndNothingElse();
    void removedServiceThatIsHeldStillReportsItsState();
    void removedServiceOutlivesTheRegistryAndTheManager();
    void removedServiceIsReleasedThoughItsSuccessorKeepsChanging();
};

void ConnmanManagerRegistryTest::registryIsEmptyUntilTheNextPassOfTheEventLoop()
{
    addService(A);
    const ConnmanManager manager(connection(), nullptr);
    QVERIFY(manager.services().isEmpty());
    QCOMPARE(calls(), QStringList());
    QCoreApplication::processEvents();
    QCOMPARE(registeredPaths(manager), {pathOf(A)});
}

void ConnmanManagerRegistryTest::firstFillAnnouncesEveryServiceToReceiversConnectedAfterConstruction()
{
    addService(A, idle());
    addService(B, idle());
    ConnmanManager manager(connection(), nullptr);
    const ManagerAnnouncements announcements(manager);
    QTRY_COMPARE(manager.services().size(), 2);
    const QStringList services = announcements.lines("added"_s);
    QCOMPARE(services.size(), 2);
    QVERIFY(services.contains(added(A)));
    QVERIFY(services.contains(added(B)));
}

void ConnmanManagerRegistryTest::firstFillReadsEachServiceOnce()
{
    addService(A);
    addService(Wired);
    const QStringList inConnmansOrder = connman().services();
    const ConnmanManager manager(connection(), nullptr);
    QCoreApplication::processEvents();
    QStringList expected{GetServicesCall};
    for (const QString &identifier : inConnmansOrder) {
        expected << getPropertiesCall(pathOf(identifier));
    }
    QCOMPARE(calls(), expected);
    QCOMPARE(complaints(), QStringList());
}

void ConnmanManagerRegistryTest::updateAddsWhatIsNewAndLeavesTheRestAlone()
{
    addService(A, idle());
    FilledManagerScene filled(*this);
    connman().addService(B, idle());
    QVERIFY(filled.manager.updateServices());
    const QStringList expectedCalls{GetServicesCall, getPropertiesCall(pathOf(B))};
    QCOMPARE(calls(), expectedCalls);
    const QStringList expectedPaths{pathOf(A), pathOf(B)};
    QCOMPARE(registeredPaths(filled.manager), expectedPaths);
    QCOMPARE(filled.announcements.lines("added"_s), {added(B)});
}

void ConnmanManagerRegistryTest::updateKeepsServicesThatConnmanNoLongerLists()
{
    addService(A, idle());
    FilledManagerScene filled(*this);
    connman().removeService(A);
    QVERIFY(filled.manager.updateServices());
    QCOMPARE(registeredPaths(filled.manager), {pathOf(A)});
}

void ConnmanManagerRegistryTest::failedUpdateIsOneLineAndChangesNothing()
{
    addService(A, idle());
    FilledManagerScene filled(*this);
    // An interface's new state that has yet to settle: any update would report it.
    connman().setServiceProperty(A, "State"_s, "ready"_s, true);
    emitPropertyChanged(pathOf(A), "State"_s, "ready"_s);
    deliver();
    filled.forget();
    const Fault fault = connman().injectFault("net.connman.Manager"_s, "GetServices"_s,
                                              FaultKind::error("net.connman.Error.Failed"_s, "Not today"_s));
    QVERIFY(!filled.manager.updateServices());
    QCOMPARE(complaints(), {critical(ServicesLog, "Call to GetServices failed: \"Not today\""_s)});
    QCOMPARE(calls(), {QString(GetServicesCall)});
    QCOMPARE(registeredPaths(filled.manager), {pathOf(A)});
    QCOMPARE(filled.announcements.lines(), QStringList());
    QVERIFY(filled.manager.updateServices());
    QCOMPARE(filled.interfaceLines().size(), 1);
}

void ConnmanManagerRegistryTest::addedServiceIsAnnouncedFilledButNotYetRegistered()
{
    FilledManagerScene filled(*this);
    const QDBusObjectPath servicePath = addService(A, {{"Name"_s, "Home"_s}});
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
    addService(A, idle());
    ConnmanManager manager(connection(), nullptr);
    const ManagerAnnouncements announcements(manager);
    QVERIFY(manager.addService(QDBusObjectPath(pathOf(A))));
    const QStringList expected{stateOf(A, State::Idle), added(A)};
    QCOMPARE(announcements.lines(), expected);
    QCOMPARE(calls(), {getPropertiesCall(pathOf(A))});
}

void ConnmanManagerRegistryTest::addingAServiceIsOneLineBeforeTheServiceIsMade()
{
    ConnmanManager manager(connection(), nullptr);
    log().clear();
    manager.addService(QDBusObjectPath(pathOf(A)));
    const auto messages = log().messages();
    QCOMPARE(messages.at(0).category, QString(ServicesLog));
    QCOMPARE(messages.at(1).category, "ConnmanService"_s);
    QCOMPARE(debugLines(ServicesLog), {"Adding service \"%1\""_s.arg(pathOf(A))});
}

void ConnmanManagerRegistryTest::addingAKnownServiceDoesNothing()
{
    addService(A, idle());
    FilledManagerScene filled(*this);
    const auto before = filled.manager.services();
    QVERIFY(!filled.manager.addService(QDBusObjectPath(pathOf(A))));
    QCOMPARE(filled.manager.services(), before);
    QCOMPARE(calls(), QStringList());
    QCOMPARE(filled.announcements.lines(), QStringList());
    QVERIFY(log().messages().isEmpty());
}

void ConnmanManagerRegistryTest::addingAServiceThatConnmanDoesNotHaveRegistersItStateless()
{
    ConnmanManager manager(connection(), nullptr);
    const ManagerAnnouncements announcements(manager);
    QVERIFY(manager.addService(QDBusObjectPath(pathOf(A))));
    QCOMPARE(announcements.lines(), {added(A)});
    QCOMPARE(registeredPaths(manager), {pathOf(A)});
    QCOMPARE(complaints(), {critical("ConnmanService.properties"_s,
                                     "Service-properties doesn't contain a value for State"_s)});
}

void ConnmanManagerRegistryTest::removingAServiceOnlyForgetsItWithOneLine()
{
    addService(A, {{"State"_s, "ready"_s}});
    FilledManagerScene filled(*this);
    filled.manager.remService(QDBusObjectPath(pathOf(A)));
    QVERIFY(filled.manager.services().isEmpty());
    QCOMPARE(filled.announcements.lines(), QStringList());
    QCOMPARE(calls(), QStringList());
    QCOMPARE(complaints(), QStringList());
    QCOMPARE(debugLines(ServicesLog), {"Removing service \"%1\""_s.arg(pathOf(A))});
}

void ConnmanManagerRegistryTest::removingAnUnknownServiceIsAWarningAndNothingElse()
{
    addService(A, idle());
    FilledManagerScene filled(*this);
    filled.manager.remService(QDBusObjectPath(pathOf(B)));
    QCOMPARE(complaints(), {nonExistent(pathOf(B))});
    QCOMPARE(log().messages().size(), 1);
    QCOMPARE(registeredPaths(filled.manager), {pathOf(A)});
    QCOMPARE(filled.announcements.lines(), QStringList());
    QCOMPARE(calls(), QStringList());
}

void ConnmanManagerRegistryTest::removedServiceThatIsHeldStillReportsItsState()
{
    addService(A, idle());
    FilledManagerScene filled(*this);
    const std::shared_ptr<ConnmanService> held = filled.manager.services().constFirst();
    filled.manager.remService(QDBusObjectPath(pathOf(A)));
    connman().setServiceProperty(A, "State"_s, "association"_s);
    deliver();
    QVERIFY(filled.announcements.lines().contains(stateOf(A, State::Association)));
}

void ConnmanManagerRegistryTest::removedServiceOutlivesTheRegistryAndTheManager()
{
    addService(A, {{"Name"_s, "Home"_s}});
    auto filled = std::make_unique<FilledManagerScene>(*this);
    const std::shared_ptr<ConnmanService> held = filled->manager.services().constFirst();
    filled->manager.remService(QDBusObjectPath(pathOf(A)));
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
    addService(A, idle());
    FilledManagerScene filled(*this);
    const std::weak_ptr<ConnmanService> removed = filled.manager.services().constFirst();
    connman().setServiceProperty(A, state, nextState);
    deliver();
    filled.manager.remService(QDBusObjectPath(pathOf(A)));
    filled.manager.addService(QDBusObjectPath(pathOf(A)));
    QVERIFY2(!removed.expired(), "the change of its state is still settling");

    const QDeadlineTimer deadline(latestMs);
    bool isReleased = false;
    for (bool goesOn = false; !isReleased && !deadline.hasExpired(); goesOn = !goesOn) {
        connman().setServiceProperty(A, state, goesOn ? nextState : "idle"_s);
        isReleased = QTest::qWaitFor([&removed] { return removed.expired(); }, pauseMs);
    }
    QVERIFY(isReleased);
    QCOMPARE(registeredPaths(filled.manager), {pathOf(A)});
}

static const Suite<ConnmanManagerRegistryTest> connmanManagerRegistryTest;
#include "ConnmanManagerRegistryTest.moc"
