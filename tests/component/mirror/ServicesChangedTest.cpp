// How the registry of ConnmanManager follows ConnMan's "ServicesChanged".

#include "ConnmanFixture.h"
#include "ConnmanManager.h"
#include "ManagerScene.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

using namespace test_support;

namespace {

} // namespace

class ServicesChangedTest : public ConnmanFixture
{
    Q_OBJECT

private slots:
    void announcedServiceIsAdded();
    void announcedServiceThatIsKnownIsReadAgain();
    void announcedPropertiesAreNotUsed();
    void announcedRemovalRemoves();
    void newServiceAnnouncedAsChangedAndRemovedIsAddedThenRemoved();
    void knownServiceAnnouncedAsChangedAndRemovedIsReadThenRemoved();
    void unknownRemovalIsAWarningAndNothingElse();
    void announcementIsHandledInOrderWithTheInterfacesLast();
};

void ServicesChangedTest::announcedServiceIsAdded()
{
    FilledManagerScene filled(*this);
    connman().addService(A, idle());
    QTRY_COMPARE(registeredPaths(filled.manager), QStringList{pathOf(A)});
    const QStringList expected{stateOf(A, State::Idle), added(A)};
    QCOMPARE(filled.announcements.lines().mid(0, 2), expected);
    QCOMPARE(calls(), {getPropertiesCall(pathOf(A))});
}

void ServicesChangedTest::announcedServiceThatIsKnownIsReadAgain()
{
    addService(A, idle());
    FilledManagerScene filled(*this);
    const auto service = filled.manager.services().constFirst();
    connman().setServiceProperty(A, "Name"_s, "Renamed"_s, true);
    emitServicesChanged({pathOf(A)}, {});
    deliver();
    QCOMPARE(service->name(), "Renamed"_s);
    QCOMPARE(filled.manager.services(), {service});
    QCOMPARE(calls(), {getPropertiesCall(pathOf(A))});
    QCOMPARE(filled.announcements.lines("added"_s), QStringList());
}

void ServicesChangedTest::announcedPropertiesAreNotUsed()
{
    addService(A, {{"Name"_s, "Home"_s}});
    FilledManagerScene filled(*this);
    const QVariantMap lie{{"Name"_s, "Lie"_s}};
    const ConnmanServiceInfoList changed{{QDBusObjectPath(pathOf(A)), lie}};
    connman().emitSignal("/"_s, "net.connman.Manager"_s, "ServicesChanged"_s,
                         {QVariant::fromValue(changed), QVariant::fromValue(QList<QDBusObjectPath>())});
    deliver();
    QCOMPARE(filled.manager.services().constFirst()->name(), "Home"_s);
    QCOMPARE(calls(), {getPropertiesCall(pathOf(A))});
}

void ServicesChangedTest::announcedRemovalRemoves()
{
    addService(A, idle());
    addService(B, idle());
    FilledManagerScene filled(*this);
    emitServicesChanged({}, {pathOf(A)});
    deliver();
    QCOMPARE(registeredPaths(filled.manager), {pathOf(B)});
    QCOMPARE(calls(), QStringList());
    QCOMPARE(complaints(), QStringList());
}

void ServicesChangedTest::newServiceAnnouncedAsChangedAndRemovedIsAddedThenRemoved()
{
    const QDBusObjectPath servicePath = addService(A, idle());
    ManagerScene recorded(*this);
    recorded.manager.remService(servicePath);
    emitServicesChanged({}, {});
    deliver();
    recorded.forget();
    emitServicesChanged({pathOf(A)}, {pathOf(A)});
    deliver();
    QVERIFY(recorded.manager.services().isEmpty());
    const QStringList expected{stateOf(A, State::Idle), added(A)};
    QCOMPARE(recorded.announcements.lines(), expected);
    const QStringList expectedLog{"Adding service \"%1\""_s.arg(pathOf(A)),
                                  "Removing service \"%1\""_s.arg(pathOf(A))};
    QCOMPARE(debugLines(ServicesLog), expectedLog);
    QCOMPARE(complaints(), QStringList());
}

void ServicesChangedTest::knownServiceAnnouncedAsChangedAndRemovedIsReadThenRemoved()
{
    addService(A, idle());
    FilledManagerScene filled(*this);
    const auto service = filled.manager.services().constFirst();
    connman().setServiceProperty(A, "Name"_s, "Renamed"_s, true);
    emitServicesChanged({pathOf(A)}, {pathOf(A)});
    deliver();
    QVERIFY(filled.manager.services().isEmpty());
    QCOMPARE(service->name(), "Renamed"_s);
    QCOMPARE(complaints(), QStringList());
}

void ServicesChangedTest::unknownRemovalIsAWarningAndNothingElse()
{
    addService(A, idle());
    FilledManagerScene filled(*this);
    emitServicesChanged({}, {pathOf(B), pathOf(Wired)});
    deliver();
    const QStringList expected{nonExistent(pathOf(B)), nonExistent(pathOf(Wired))};
    QCOMPARE(complaints(), expected);
    QCOMPARE(registeredPaths(filled.manager), {pathOf(A)});
    QCOMPARE(filled.announcements.lines(), QStringList());
    QCOMPARE(calls(), QStringList());
}

void ServicesChangedTest::announcementIsHandledInOrderWithTheInterfacesLast()
{
    const QVariantMap onWlan{{"State"_s, "ready"_s}, {"Ethernet"_s, QVariantMap{{"Interface"_s, "wlan0"_s}}}};
    const QDBusObjectPath first = addService(A, onWlan);
    const QDBusObjectPath second = addService(B, onWlan);
    ManagerScene recorded(*this);
    recorded.manager.remService(first);
    recorded.manager.remService(second);
    emitServicesChanged({}, {});
    deliver();
    recorded.forget();
    emitServicesChanged({pathOf(B), pathOf(A)}, {pathOf(B)});
    deliver();
    const QStringList expected{stateOf(B, State::Ready), added(B), stateOf(A, State::Ready), added(A),
                               interfaceIs("wlan0"_s, State::Ready)};
    QCOMPARE(recorded.announcements.lines(), expected);
    const QStringList expectedCalls{getPropertiesCall(pathOf(B)), getPropertiesCall(pathOf(A))};
    QCOMPARE(calls(), expectedCalls);
    QCOMPARE(registeredPaths(recorded.manager), {pathOf(A)});
}

static const Suite<ServicesChangedTest> servicesChangedTest;
#include "ServicesChangedTest.moc"
