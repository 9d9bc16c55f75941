// Letting ConnMan's announcements in, and nothing else, while the event loop stands still; and what becomes
// of the services when ConnMan goes.

#include "ConnmanManager.h"
#include "ConnmanTechnology.h"
#include "ManagerAnnouncements.h"
#include "MirrorWorld.h"
#include "Suite.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

using namespace std::chrono_literals;
using State = ConnmanService::State;

namespace {

const QLatin1String Service("wifi_020000000000_61_managed_psk");
const QLatin1String Other("wifi_020000000000_62_managed_none");
const QString ConnmanName = QStringLiteral("net.connman");
constexpr auto Limit = 200ms;
/// For what must not last: longer than any limit here, and much shorter than this.
constexpr auto LongLimit = 60s;
constexpr qint64 EarlyMs = 30000;

/// A manager whose first fill is over.
std::unique_ptr<ConnmanManager> filledManager(MirrorWorld &world)
{
    auto manager = std::make_unique<ConnmanManager>(world.connection(), nullptr);
    QCoreApplication::processEvents();
    world.simulator().clearCalls();
    return manager;
}

bool never()
{
    return false;
}

} // namespace

class AnnouncementsTest : public QObject
{
    Q_OBJECT

private slots:
    void queuedAnnouncementIsDeliveredOnDemand();
    void firstFillIsDeliveredOnDemand();
    void queuedAnnouncementIsHandledBeforeTheFirstLook();
    void announcementThatComesLaterEndsTheWait();
    void unrelatedAnnouncementsDoNotEndTheWait();
    void announcementsThatWereQueuedCountAsOneLook();
    void withoutAnAnnouncementTheDeadlineEndsTheWait();
    void passedDeadlineStillDeliversWhatIsQueued();
    void nothingIsAskedOfConnmanWithoutAnAnnouncement();
    void eventsOfOtherObjectsWaitForTheEventLoop();
    void propertyChangesOfServicesWaitForTheEventLoop();
    void timersWaitForTheEventLoop();

    void servicesOfAConnmanThatHasGoneAreForgotten();
    void forgettingThemAsksNothing();
    void returnOfConnmanFillsTheRegistryByItsOwnAnnouncement();
    void goneAndBackAreToldInTheirOrderOnDemand();
};

void AnnouncementsTest::queuedAnnouncementIsDeliveredOnDemand()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    const QDBusObjectPath path = world.simulator().addService(Service);
    world.emitServicesChanged({path.path()}, {});
    world.receive();
    QVERIFY(manager->services().isEmpty());
    manager->deliverAnnouncements();
    QCOMPARE(registeredPaths(*manager), {path.path()});
}

void AnnouncementsTest::firstFillIsDeliveredOnDemand()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(Service);
    ConnmanManager manager(world.connection(), nullptr);
    QVERIFY(manager.services().isEmpty());
    manager.deliverAnnouncements();
    QCOMPARE(registeredPaths(manager), {path.path()});
}

void AnnouncementsTest::queuedAnnouncementIsHandledBeforeTheFirstLook()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    const QDBusObjectPath path = world.simulator().addService(Service);
    world.emitServicesChanged({path.path()}, {});
    world.receive();
    QStringList seenFirst;
    manager->awaitAnnouncements(QDeadlineTimer(LongLimit), [&] {
        seenFirst = registeredPaths(*manager);
        return true;
    });
    QCOMPARE(seenFirst, {path.path()});
}

void AnnouncementsTest::announcementThatComesLaterEndsTheWait()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    world.simulator().setTiming(QStringLiteral("scan"), 10);
    world.simulator().setTiming(QStringLiteral("announce"), 100);
    world.simulator().addNetwork(
        {{QStringLiteral("ssid"), QStringLiteral("Home")}, {QStringLiteral("atOnce"), false}});
    const ConnmanTechnology wifi(world.connection(), QStringLiteral("wifi"), nullptr);
    QVERIFY(wifi.scan());
    QVERIFY(manager->services().isEmpty());
    QElapsedTimer elapsed;
    elapsed.start();
    manager->awaitAnnouncements(QDeadlineTimer(LongLimit), [&] { return !manager->services().isEmpty(); });
    QVERIFY(elapsed.elapsed() < EarlyMs);
    QCOMPARE(manager->services().constFirst()->name(), QStringLiteral("Home"));
}

void AnnouncementsTest::unrelatedAnnouncementsDoNotEndTheWait()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    world.emitServicesChanged({}, {});
    world.receive();
    world.simulator().setTiming(QStringLiteral("announce"), 100);
    world.simulator().addService(Service);
    world.emitServicesChanged({}, {});
    world.emitServicesChanged({}, {QStringLiteral("/net/connman/service/nothing")});
    QElapsedTimer elapsed;
    elapsed.start();
    manager->awaitAnnouncements(QDeadlineTimer(LongLimit), [&] {
        return registeredPaths(*manager).contains(MirrorWorld::pathOf(Service));
    });
    QVERIFY(elapsed.elapsed() < EarlyMs);
    QVERIFY(registeredPaths(*manager).contains(MirrorWorld::pathOf(Service)));
}

void AnnouncementsTest::announcementsThatWereQueuedCountAsOneLook()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    world.emitServicesChanged({}, {});
    world.emitServicesChanged({}, {});
    world.receive();
    int looks = 0;
    manager->awaitAnnouncements(QDeadlineTimer(LongLimit), [&] {
        if (++looks < 4) {
            world.emitServicesChanged({}, {});
        }
        return looks == 4;
    });
    QCOMPARE(looks, 4);
}

void AnnouncementsTest::withoutAnAnnouncementTheDeadlineEndsTheWait()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    QElapsedTimer elapsed;
    elapsed.start();
    manager->awaitAnnouncements(QDeadlineTimer(Limit), never);
    QVERIFY(elapsed.elapsed() >= Limit.count());
    QVERIFY(elapsed.elapsed() < EarlyMs);
}

void AnnouncementsTest::passedDeadlineStillDeliversWhatIsQueued()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    const QDBusObjectPath path = world.simulator().addService(Service);
    world.emitServicesChanged({path.path()}, {});
    world.receive();
    manager->awaitAnnouncements(QDeadlineTimer(0), never);
    QCOMPARE(registeredPaths(*manager), {path.path()});
}

void AnnouncementsTest::nothingIsAskedOfConnmanWithoutAnAnnouncement()
{
    MirrorWorld world;
    world.addService(Service);
    const auto manager = filledManager(world);
    manager->awaitAnnouncements(QDeadlineTimer(20ms), never);
    QCOMPARE(world.simulator().calls(), QStringList());
}

void AnnouncementsTest::eventsOfOtherObjectsWaitForTheEventLoop()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    QObject other;
    bool isDelivered = false;
    QMetaObject::invokeMethod(
        &other, [&isDelivered] { isDelivered = true; }, Qt::QueuedConnection);
    manager->awaitAnnouncements(QDeadlineTimer(20ms), never);
    QVERIFY(!isDelivered);
    QCoreApplication::processEvents();
    QVERIFY(isDelivered);
}

void AnnouncementsTest::propertyChangesOfServicesWaitForTheEventLoop()
{
    MirrorWorld world;
    world.addService(Service, {{QStringLiteral("Name"), QStringLiteral("Home")}});
    const auto manager = filledManager(world);
    const auto service = manager->services().constFirst();
    world.emitPropertyChanged(service->path(), QStringLiteral("Name"), QStringLiteral("Renamed"));
    manager->awaitAnnouncements(QDeadlineTimer(Limit), never);
    QCOMPARE(service->name(), QStringLiteral("Home"));
    QTRY_COMPARE(service->name(), QStringLiteral("Renamed"));
}

void AnnouncementsTest::timersWaitForTheEventLoop()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    bool isFired = false;
    QTimer::singleShot(1, manager.get(), [&isFired] { isFired = true; });
    manager->awaitAnnouncements(QDeadlineTimer(20ms), never);
    QVERIFY(!isFired);
    QTRY_VERIFY(isFired);
}

void AnnouncementsTest::servicesOfAConnmanThatHasGoneAreForgotten()
{
    MirrorWorld world;
    world.addService(Service, {{QStringLiteral("State"), QStringLiteral("ready")}});
    RecordedManager filled(world);
    QCOMPARE(filled.interfaceLines(), {interfaceIs(QStringLiteral("wlan0"), State::Ready)});
    filled.forget();
    world.simulator().setPresent(ConnmanName, false);
    QTRY_VERIFY(filled.manager.services().isEmpty());
    QCOMPARE(filled.announcements.lines(), {interfaceIs(QStringLiteral("wlan0"), State::Unknown)});
    QCOMPARE(world.debugLines(QStringLiteral("ConnmanManager.services")),
             {QStringLiteral("Removing service \"%1\"").arg(MirrorWorld::pathOf(Service))});
}

void AnnouncementsTest::forgettingThemAsksNothing()
{
    MirrorWorld world;
    world.addService(Service);
    RecordedManager filled(world);
    filled.forget();
    world.simulator().setPresent(ConnmanName, false);
    QTRY_VERIFY(filled.manager.services().isEmpty());
    QCOMPARE(world.simulator().calls(), QStringList());
    QCOMPARE(world.complaints(), QStringList());
}

void AnnouncementsTest::returnOfConnmanFillsTheRegistryByItsOwnAnnouncement()
{
    MirrorWorld world;
    world.addService(Service);
    RecordedManager filled(world);
    world.simulator().setPresent(ConnmanName, false);
    QTRY_VERIFY(filled.manager.services().isEmpty());
    filled.forget();
    world.simulator().setPresent(ConnmanName, true);
    QTRY_COMPARE(registeredPaths(filled.manager), QStringList(MirrorWorld::pathOf(Service)));
    QCOMPARE(world.simulator().calls(),
             QStringList(MirrorWorld::getPropertiesCall(MirrorWorld::pathOf(Service))));
}

void AnnouncementsTest::goneAndBackAreToldInTheirOrderOnDemand()
{
    MirrorWorld world;
    world.addService(Service);
    RecordedManager filled(world);
    world.simulator().setPresent(ConnmanName, false);
    world.simulator().removeService(Service);
    world.simulator().setPresent(ConnmanName, true);
    world.simulator().addService(Other);
    world.emitServicesChanged({MirrorWorld::pathOf(Other)}, {});
    world.receive();
    filled.manager.deliverAnnouncements();
    QCOMPARE(registeredPaths(filled.manager), {MirrorWorld::pathOf(Other)});
}

static const Suite<AnnouncementsTest> suite;
#include "AnnouncementsTest.moc"
