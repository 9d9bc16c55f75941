// Letting ConnMan's announcements in, and nothing else, while the event loop stands still; and what becomes
// of the services when ConnMan goes.

#include "ConnmanFixture.h"
#include "ConnmanManager.h"
#include "ConnmanTechnology.h"
#include "ManagerScene.h"
#include "Suite.h"
#include "Text.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

using namespace test_support;
using namespace std::chrono_literals;

namespace {

const QString ConnmanName = "net.connman"_s;
constexpr auto Limit = 200ms;
/// For what must not last: longer than any limit here, and much shorter than this.
constexpr auto LongLimit = 60s;
constexpr qint64 EarlyMs = 30000;

/// A manager whose first fill is over.
std::unique_ptr<ConnmanManager> filledManager(ConnmanFixture &fixture)
{
    auto manager = std::make_unique<ConnmanManager>(ConnmanFixture::connection(), nullptr);
    QCoreApplication::processEvents();
    fixture.connman().clearCalls();
    return manager;
}

bool never()
{
    return false;
}

} // namespace

class AnnouncementsTest : public ConnmanFixture
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
    const auto manager = filledManager(*this);
    const QDBusObjectPath path = connman().addService(A);
    emitServicesChanged({path.path()}, {});
    receive();
    QVERIFY(manager->services().isEmpty());
    manager->deliverAnnouncements();
    QCOMPARE(registeredPaths(*manager), {path.path()});
}

void AnnouncementsTest::firstFillIsDeliveredOnDemand()
{
    const QDBusObjectPath path = addService(A);
    ConnmanManager manager(connection(), nullptr);
    QVERIFY(manager.services().isEmpty());
    manager.deliverAnnouncements();
    QCOMPARE(registeredPaths(manager), {path.path()});
}

void AnnouncementsTest::queuedAnnouncementIsHandledBeforeTheFirstLook()
{
    const auto manager = filledManager(*this);
    const QDBusObjectPath path = connman().addService(A);
    emitServicesChanged({path.path()}, {});
    receive();
    QStringList seenFirst;
    manager->awaitAnnouncements(QDeadlineTimer(LongLimit), [&] {
        seenFirst = registeredPaths(*manager);
        return true;
    });
    QCOMPARE(seenFirst, {path.path()});
}

void AnnouncementsTest::announcementThatComesLaterEndsTheWait()
{
    const auto manager = filledManager(*this);
    connman().setTiming("scan"_s, 10);
    connman().setTiming("announce"_s, 100);
    connman().addNetwork({{"ssid"_s, "Home"_s}, {"atOnce"_s, false}});
    const ConnmanTechnology wifi(connection(), "wifi"_s, nullptr);
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
    const auto manager = filledManager(*this);
    emitServicesChanged({}, {});
    receive();
    connman().setTiming("announce"_s, 100);
    connman().addService(A);
    emitServicesChanged({}, {});
    emitServicesChanged({}, {"/net/connman/service/nothing"_s});
    QElapsedTimer elapsed;
    elapsed.start();
    manager->awaitAnnouncements(QDeadlineTimer(LongLimit),
                                [&] { return registeredPaths(*manager).contains(pathOf(A)); });
    QVERIFY(elapsed.elapsed() < EarlyMs);
    QVERIFY(registeredPaths(*manager).contains(pathOf(A)));
}

void AnnouncementsTest::announcementsThatWereQueuedCountAsOneLook()
{
    const auto manager = filledManager(*this);
    emitServicesChanged({}, {});
    emitServicesChanged({}, {});
    receive();
    int looks = 0;
    manager->awaitAnnouncements(QDeadlineTimer(LongLimit), [&] {
        if (++looks < 4) {
            emitServicesChanged({}, {});
        }
        return looks == 4;
    });
    QCOMPARE(looks, 4);
}

void AnnouncementsTest::withoutAnAnnouncementTheDeadlineEndsTheWait()
{
    const auto manager = filledManager(*this);
    QElapsedTimer elapsed;
    elapsed.start();
    manager->awaitAnnouncements(QDeadlineTimer(Limit), never);
    QVERIFY(elapsed.elapsed() >= Limit.count());
    QVERIFY(elapsed.elapsed() < EarlyMs);
}

void AnnouncementsTest::passedDeadlineStillDeliversWhatIsQueued()
{
    const auto manager = filledManager(*this);
    const QDBusObjectPath path = connman().addService(A);
    emitServicesChanged({path.path()}, {});
    receive();
    manager->awaitAnnouncements(QDeadlineTimer(0), never);
    QCOMPARE(registeredPaths(*manager), {path.path()});
}

void AnnouncementsTest::nothingIsAskedOfConnmanWithoutAnAnnouncement()
{
    addService(A);
    const auto manager = filledManager(*this);
    manager->awaitAnnouncements(QDeadlineTimer(20ms), never);
    QCOMPARE(calls(), QStringList());
}

void AnnouncementsTest::eventsOfOtherObjectsWaitForTheEventLoop()
{
    const auto manager = filledManager(*this);
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
    addService(A, {{"Name"_s, "Home"_s}});
    const auto manager = filledManager(*this);
    const auto service = manager->services().constFirst();
    emitPropertyChanged(service->path(), "Name"_s, "Renamed"_s);
    manager->awaitAnnouncements(QDeadlineTimer(Limit), never);
    QCOMPARE(service->name(), "Home"_s);
    QTRY_COMPARE(service->name(), "Renamed"_s);
}

void AnnouncementsTest::timersWaitForTheEventLoop()
{
    const auto manager = filledManager(*this);
    bool isFired = false;
    QTimer::singleShot(1, manager.get(), [&isFired] { isFired = true; });
    manager->awaitAnnouncements(QDeadlineTimer(20ms), never);
    QVERIFY(!isFired);
    QTRY_VERIFY(isFired);
}

void AnnouncementsTest::servicesOfAConnmanThatHasGoneAreForgotten()
{
    addService(A, {{"State"_s, "ready"_s}});
    ManagerScene filled(*this);
    QCOMPARE(filled.interfaceLines(), {interfaceIs("wlan0"_s, State::Ready)});
    filled.forget();
    connman().setPresent(ConnmanName, false);
    QTRY_VERIFY(filled.manager.services().isEmpty());
    QCOMPARE(filled.announcements.lines(), {interfaceIs("wlan0"_s, State::Unknown)});
    QCOMPARE(debugLines("ConnmanManager.services"_s), {"Removing service \"%1\""_s.arg(pathOf(A))});
}

void AnnouncementsTest::forgettingThemAsksNothing()
{
    addService(A);
    FilledManagerScene filled(*this);
    connman().setPresent(ConnmanName, false);
    QTRY_VERIFY(filled.manager.services().isEmpty());
    QCOMPARE(calls(), QStringList());
    QCOMPARE(complaints(), QStringList());
}

void AnnouncementsTest::returnOfConnmanFillsTheRegistryByItsOwnAnnouncement()
{
    addService(A);
    ManagerScene filled(*this);
    connman().setPresent(ConnmanName, false);
    QTRY_VERIFY(filled.manager.services().isEmpty());
    filled.forget();
    connman().setPresent(ConnmanName, true);
    QTRY_COMPARE(registeredPaths(filled.manager), QStringList(pathOf(A)));
    QCOMPARE(calls(), QStringList(getPropertiesCall(pathOf(A))));
}

void AnnouncementsTest::goneAndBackAreToldInTheirOrderOnDemand()
{
    addService(A);
    ManagerScene filled(*this);
    connman().setPresent(ConnmanName, false);
    connman().removeService(A);
    connman().setPresent(ConnmanName, true);
    connman().addService(B);
    emitServicesChanged({pathOf(B)}, {});
    receive();
    filled.manager.deliverAnnouncements();
    QCOMPARE(registeredPaths(filled.manager), {pathOf(B)});
}

static const Suite<AnnouncementsTest> announcementsTest;
#include "AnnouncementsTest.moc"
