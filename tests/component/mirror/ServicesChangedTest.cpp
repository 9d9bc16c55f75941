// How the registry of ConnmanManager follows ConnMan's "ServicesChanged".

#include "ConnmanManager.h"
#include "ManagerAnnouncements.h"
#include "MirrorWorld.h"
#include "Suite.h"

#include <QTest>

using State = ConnmanService::State;

namespace {

const QLatin1String A("wifi_020000000000_61_managed_psk");
const QLatin1String B("wifi_020000000000_62_managed_none");
const QLatin1String Wired("ethernet_020000000001_cable");
const QLatin1String ServicesLog("ConnmanManager.services");

const QVariantMap &idle()
{
    static const QVariantMap properties{{QStringLiteral("State"), QStringLiteral("idle")}};
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
    return warning(ServicesLog,
                   QStringLiteral("Trying to remove non-existant service \"%1\"").arg(servicePath));
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
    world.simulator().setServiceProperty(A, QStringLiteral("Name"), QStringLiteral("Renamed"), true);
    world.emitServicesChanged({path(A)}, {});
    world.deliver();
    QCOMPARE(service->name(), QStringLiteral("Renamed"));
    QCOMPARE(filled.manager.services(), {service});
    QCOMPARE(world.simulator().calls(), {MirrorWorld::getPropertiesCall(path(A))});
    QCOMPARE(filled.announcements.lines(QStringLiteral("added")), QStringList());
}

void ServicesChangedTest::announcedPropertiesAreNotUsed()
{
    MirrorWorld world;
    world.addService(A, {{QStringLiteral("Name"), QStringLiteral("Home")}});
    FilledManager filled(world);
    const QVariantMap lie{{QStringLiteral("Name"), QStringLiteral("Lie")}};
    const ConnmanServiceInfoList changed{{QDBusObjectPath(path(A)), lie}};
    world.simulator().emitSignal(
        QStringLiteral("/"), QStringLiteral("net.connman.Manager"), QStringLiteral("ServicesChanged"),
        {QVariant::fromValue(changed), QVariant::fromValue(QList<QDBusObjectPath>())});
    world.deliver();
    QCOMPARE(filled.manager.services().constFirst()->name(), QStringLiteral("Home"));
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
    const QStringList expectedLog{QStringLiteral("Adding service \"%1\"").arg(path(A)),
                                  QStringLiteral("Removing service \"%1\"").arg(path(A))};
    QCOMPARE(world.debugLines(ServicesLog), expectedLog);
    QCOMPARE(world.complaints(), QStringList());
}

void ServicesChangedTest::knownServiceAnnouncedAsChangedAndRemovedIsReadThenRemoved()
{
    MirrorWorld world;
    world.addService(A, idle());
    FilledManager filled(world);
    const auto service = filled.manager.services().constFirst();
    world.simulator().setServiceProperty(A, QStringLiteral("Name"), QStringLiteral("Renamed"), true);
    world.emitServicesChanged({path(A)}, {path(A)});
    world.deliver();
    QVERIFY(filled.manager.services().isEmpty());
    QCOMPARE(service->name(), QStringLiteral("Renamed"));
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
    const QVariantMap onWlan{
        {QStringLiteral("State"), QStringLiteral("ready")},
        {QStringLiteral("Ethernet"), QVariantMap{{QStringLiteral("Interface"), QStringLiteral("wlan0")}}}};
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
                               interfaceIs(QStringLiteral("wlan0"), State::Ready)};
    QCOMPARE(recorded.announcements.lines(), expected);
    const QStringList expectedCalls{MirrorWorld::getPropertiesCall(path(B)),
                                    MirrorWorld::getPropertiesCall(path(A))};
    QCOMPARE(world.simulator().calls(), expectedCalls);
    QCOMPARE(registeredPaths(recorded.manager), {path(A)});
}

static const Suite<ServicesChangedTest> suite;
#include "ServicesChangedTest.moc"
