// Letting ConnMan's announcements in, and nothing else, while the event loop stands still; and what becomes
// of the services when ConnMan goes.

#include "ConnmanManager.h"
#include "ConnmanTechnology.h"
#include "ManagerAnnouncements.h"
#include "MirrorWorld.h"
#include "Suite.h"
#include "Text.h"

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
const QString ConnmanName = "net.connman"_s;
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
    world.simulator().setTiming("scan"_s, 10);
    world.simulator().setTiming("announce"_s, 100);
    world.simulator().addNetwork({{"ssid"_s, "Home"_s}, {"atOnce"_s, false}});
    const ConnmanTechnology wifi(world.connection(), "wifi"_s, nullptr);
    QVERIFY(wifi.scan());
    QVERIFY(manager->services().isEmpty());
    QElapsedTimer elapsed;
    elapsed.start();
    manager->awaitAnnouncements(QDeadlineTimer(LongLimit), [&] { return !manager->services().isEmpty(); });
    QVERIFY(elapsed.elapsed() < EarlyMs);
    QCOMPARE(manager->services().constFirst()->name(), "Home"_s);
}

void AnnouncementsTest::unrelatedAnnouncementsDoNotEndTheWait()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    world.emitServicesChanged({}, {});
    world.receive();
    world.simulator().setTiming("announce"_s, 100);
    world.simulator().addService(Service);
    world.emitServicesChanged({}, {});
    world.emitServicesChanged({}, {"/net/connman/service/nothing"_s});
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
    world.addService(Service, {{"Name"_s, "Home"_s}});
    const auto manager = filledManager(world);
    const auto service = manager->services().constFirst();
    world.emitPropertyChanged(service->path(), "Name"_s, "Renamed"_s);
    manager->awaitAnnouncements(QDeadlineTimer(Limit), never);
    QCOMPARE(service->name(), "Home"_s);
    QTRY_COMPARE(service->name(), "Renamed"_s);
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
    world.addService(Service, {{"State"_s, "ready"_s}});
    RecordedManager filled(world);
    QCOMPARE(filled.interfaceLines(), {interfaceIs("wlan0"_s, State::Ready)});
    filled.forget();
    world.simulator().setPresent(ConnmanName, false);
    QTRY_VERIFY(filled.manager.services().isEmpty());
    QCOMPARE(filled.announcements.lines(), {interfaceIs("wlan0"_s, State::Unknown)});
    QCOMPARE(world.debugLines("ConnmanManager.services"_s),
             {"Removing service \"%1\""_s.arg(MirrorWorld::pathOf(Service))});
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
