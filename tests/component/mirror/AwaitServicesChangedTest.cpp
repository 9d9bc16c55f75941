// Letting a scan's announcement in, and nothing else, while the event loop stands still.

#include "ConnmanManager.h"
#include "ConnmanTechnology.h"
#include "MirrorWorld.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QtTest>

using namespace std::chrono_literals;

namespace {

const QLatin1String Service("wifi_020000000000_61_managed_psk");
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

} // namespace

class AwaitServicesChangedTest : public QObject
{
    Q_OBJECT

private slots:
    void announcementThatIsQueuedIsHandledAtOnce();
    void announcementThatComesLaterIsWaitedFor();
    void withoutAnAnnouncementTheLimitEndsTheWait();
    void announcementHandledBeforeTheWaitDoesNotEndIt();
    void announcementOfAScanComesInAfterTheScan();
    void nothingIsAskedOfConnmanWithoutAnAnnouncement();
    void eventsOfOtherObjectsWaitForTheEventLoop();
    void propertyChangesOfServicesWaitForTheEventLoop();
    void timersWaitForTheEventLoop();
};

void AwaitServicesChangedTest::announcementThatIsQueuedIsHandledAtOnce()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    const QDBusObjectPath path = world.simulator().addService(Service);
    world.emitServicesChanged({path.path()}, {});
    QElapsedTimer elapsed;
    elapsed.start();
    manager->awaitServicesChanged(LongLimit);
    QVERIFY(elapsed.elapsed() < EarlyMs);
    QCOMPARE(manager->services().size(), 1);
    QCOMPARE(manager->services().constFirst()->path(), path.path());
}

void AwaitServicesChangedTest::announcementThatComesLaterIsWaitedFor()
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
    manager->awaitServicesChanged(LongLimit);
    QCOMPARE(manager->services().size(), 1);
}

void AwaitServicesChangedTest::withoutAnAnnouncementTheLimitEndsTheWait()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    QElapsedTimer elapsed;
    elapsed.start();
    manager->awaitServicesChanged(Limit);
    QVERIFY(elapsed.elapsed() >= Limit.count());
    QVERIFY(elapsed.elapsed() < EarlyMs);
    QVERIFY(manager->services().isEmpty());
}

// It may be about an older scan.
void AwaitServicesChangedTest::announcementHandledBeforeTheWaitDoesNotEndIt()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    world.emitServicesChanged({}, {});
    world.deliver();
    QElapsedTimer elapsed;
    elapsed.start();
    manager->awaitServicesChanged(Limit);
    QVERIFY(elapsed.elapsed() >= Limit.count());
}

void AwaitServicesChangedTest::announcementOfAScanComesInAfterTheScan()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    const QString identifier = world.simulator().addNetwork(
        {{QStringLiteral("ssid"), QStringLiteral("Home")}, {QStringLiteral("atOnce"), false}});
    const ConnmanTechnology wifi(world.connection(), QStringLiteral("wifi"), nullptr);
    QVERIFY(wifi.scan());
    manager->awaitServicesChanged(LongLimit);
    QCOMPARE(manager->services().size(), 1);
    QCOMPARE(manager->services().constFirst()->identifier(), identifier);
    QCOMPARE(manager->services().constFirst()->name(), QStringLiteral("Home"));
}

void AwaitServicesChangedTest::nothingIsAskedOfConnmanWithoutAnAnnouncement()
{
    MirrorWorld world;
    world.addService(Service);
    const auto manager = filledManager(world);
    manager->awaitServicesChanged(20ms);
    QCOMPARE(world.simulator().calls(), QStringList());
}

void AwaitServicesChangedTest::eventsOfOtherObjectsWaitForTheEventLoop()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    QObject other;
    bool isDelivered = false;
    QMetaObject::invokeMethod(
        &other, [&isDelivered] { isDelivered = true; }, Qt::QueuedConnection);
    manager->awaitServicesChanged(20ms);
    QVERIFY(!isDelivered);
    QCoreApplication::processEvents();
    QVERIFY(isDelivered);
}

void AwaitServicesChangedTest::propertyChangesOfServicesWaitForTheEventLoop()
{
    MirrorWorld world;
    world.addService(Service, {{QStringLiteral("Name"), QStringLiteral("Home")}});
    const auto manager = filledManager(world);
    const auto service = manager->services().constFirst();
    world.emitPropertyChanged(service->path(), QStringLiteral("Name"), QStringLiteral("Renamed"));
    manager->awaitServicesChanged(Limit);
    QCOMPARE(service->name(), QStringLiteral("Home"));
    QTRY_COMPARE(service->name(), QStringLiteral("Renamed"));
}

void AwaitServicesChangedTest::timersWaitForTheEventLoop()
{
    MirrorWorld world;
    const auto manager = filledManager(world);
    bool isFired = false;
    QTimer::singleShot(1, this, [&isFired] { isFired = true; });
    manager->awaitServicesChanged(20ms);
    QVERIFY(!isFired);
    QTRY_VERIFY(isFired);
}

QTEST_GUILESS_MAIN(AwaitServicesChangedTest)
#include "AwaitServicesChangedTest.moc"
