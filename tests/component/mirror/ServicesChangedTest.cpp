// How the registry of ConnmanManager follows ConnMan's "ServicesChanged".

#include "ConnmanManager.h"
#include "ManagerAnnouncements.h"
#include "MirrorWorld.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

using State = ConnmanService::State;

namespace {

const QLatin1String A("wifi_020000000000_61_managed_psk");
const QLatin1String B("wifi_020000000000_62_managed_none");
const QLatin1String Wired("ethernet_020000000001_cable");
const QLatin1String ServicesLog("ConnmanManager.services");

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

class ServicesChangedTest : public QObject
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
    MirrorWorld world;
    FilledManager filled(world);
    world.simulator().addService(A, idle());
    QTRY_COMPARE(registeredPaths(filled.manager), QStringList{path(A)});
    const QStringList expected{stateOf(A, State::Idle), added(A)};
    QCOMPARE(filled.announcements.lines().mid(0, 2), expected);
    QCOMPARE(world.simulator().calls(), {MirrorWorld::getPropertiesCall(path(A))});
}

void ServicesChangedTest::announcedServiceThatIsKnownIsReadAgain()
{
    MirrorWorld world;
    world.addService(A, idle());
    FilledManager filled(world);
    const auto service = filled.manager.services().constFirst();
    world.simulator().setServiceProperty(A, "Name"_s, "Renamed"_s, true);
    world.emitServicesChanged({path(A)}, {});
    world.deliver();
    QCOMPARE(service->name(), "Renamed"_s);
    QCOMPARE(filled.manager.services(), {service});
    QCOMPARE(world.simulator().calls(), {MirrorWorld::getPropertiesCall(path(A))});
    QCOMPARE(filled.announcements.lines("added"_s), QStringList());
}

void ServicesChangedTest::announcedPropertiesAreNotUsed()
{
    MirrorWorld world;
    world.addService(A, {{"Name"_s, "Home"_s}});
    FilledManager filled(world);
    const QVariantMap lie{{"Name"_s, "Lie"_s}};
    const ConnmanServiceInfoList changed{{QDBusObjectPath(path(A)), lie}};
    world.simulator().emitSignal(
        "/"_s, "net.connman.Manager"_s, "ServicesChanged"_s,
        {QVariant::fromValue(changed), QVariant::fromValue(QList<QDBusObjectPath>())});
    world.deliver();
    QCOMPARE(filled.manager.services().constFirst()->name(), "Home"_s);
    QCOMPARE(world.simulator().calls(), {MirrorWorld::getPropertiesCall(path(A))});
}

void ServicesChangedTest::announcedRemovalRemoves()
{
    MirrorWorld world;
    world.addService(A, idle());
    world.addService(B, idle());
    FilledManager filled(world);
    world.emitServicesChanged({}, {path(A)});
    world.deliver();
    QCOMPARE(registeredPaths(filled.manager), {path(B)});
    QCOMPARE(world.simulator().calls(), QStringList());
    QCOMPARE(world.complaints(), QStringList());
}

void ServicesChangedTest::newServiceAnnouncedAsChangedAndRemovedIsAddedThenRemoved()
{
    MirrorWorld world;
    const QDBusObjectPath servicePath = world.addService(A, idle());
    RecordedManager recorded(world);
    recorded.manager.remService(servicePath);
    world.emitServicesChanged({}, {});
    world.deliver();
    recorded.forget();
    world.emitServicesChanged({path(A)}, {path(A)});
    world.deliver();
    QVERIFY(recorded.manager.services().isEmpty());
    const QStringList expected{stateOf(A, State::Idle), added(A)};
    QCOMPARE(recorded.announcements.lines(), expected);
    const QStringList expectedLog{"Adding service \"%1\""_s.arg(path(A)),
                                  "Removing service \"%1\""_s.arg(path(A))};
    QCOMPARE(world.debugLines(ServicesLog), expectedLog);
    QCOMPARE(world.complaints(), QStringList());
}

void ServicesChangedTest::knownServiceAnnouncedAsChangedAndRemovedIsReadThenRemoved()
{
    MirrorWorld world;
    world.addService(A, idle());
    FilledManager filled(world);
    const auto service = filled.manager.services().constFirst();
    world.simulator().setServiceProperty(A, "Name"_s, "Renamed"_s, true);
    world.emitServicesChanged({path(A)}, {path(A)});
    world.deliver();
    QVERIFY(filled.manager.services().isEmpty());
    QCOMPARE(service->name(), "Renamed"_s);
    QCOMPARE(world.complaints(), QStringList());
}

void ServicesChangedTest::unknownRemovalIsAWarningAndNothingElse()
{
    MirrorWorld world;
    world.addService(A, idle());
    FilledManager filled(world);
    world.emitServicesChanged({}, {path(B), path(Wired)});
    world.deliver();
    const QStringList expected{nonExistent(path(B)), nonExistent(path(Wired))};
    QCOMPARE(world.complaints(), expected);
    QCOMPARE(registeredPaths(filled.manager), {path(A)});
    QCOMPARE(filled.announcements.lines(), QStringList());
    QCOMPARE(world.simulator().calls(), QStringList());
}

void ServicesChangedTest::announcementIsHandledInOrderWithTheInterfacesLast()
{
    MirrorWorld world;
    const QVariantMap onWlan{{"State"_s, "ready"_s}, {"Ethernet"_s, QVariantMap{{"Interface"_s, "wlan0"_s}}}};
    const QDBusObjectPath first = world.addService(A, onWlan);
    const QDBusObjectPath second = world.addService(B, onWlan);
    RecordedManager recorded(world);
    recorded.manager.remService(first);
    recorded.manager.remService(second);
    world.emitServicesChanged({}, {});
    world.deliver();
    recorded.forget();
    world.emitServicesChanged({path(B), path(A)}, {path(B)});
    world.deliver();
    const QStringList expected{stateOf(B, State::Ready), added(B), stateOf(A, State::Ready), added(A),
                               interfaceIs("wlan0"_s, State::Ready)};
    QCOMPARE(recorded.announcements.lines(), expected);
    const QStringList expectedCalls{MirrorWorld::getPropertiesCall(path(B)),
                                    MirrorWorld::getPropertiesCall(path(A))};
    QCOMPARE(world.simulator().calls(), expectedCalls);
    QCOMPARE(registeredPaths(recorded.manager), {path(A)});
}

static const Suite<ServicesChangedTest> suite;
#include "ServicesChangedTest.moc"
