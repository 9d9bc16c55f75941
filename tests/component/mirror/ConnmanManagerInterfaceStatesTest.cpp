// One state per network interface, derived from the services on it, and when it is reported.

#include "ConnmanManager.h"
#include "ManagerAnnouncements.h"
#include "MirrorWorld.h"
#include "Suite.h"
#include "Text.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using State = ConnmanService::State;

Q_DECLARE_METATYPE(ConnmanService::State)

namespace {

const QLatin1String StateKey("State");
const QLatin1String EthernetKey("Ethernet");
const QLatin1String Wlan("wlan0");
const QLatin1String Wire("eth0");
const QLatin1String Service("wifi_020000000000_61_managed_psk");

/// How much later than after the two seconds in which a state settles its report may come on a busy machine.
constexpr int LatestMs = 8000;
/// Long enough for a report that must not come.
constexpr int TooLateMs = 3000;

QString identifier(int number)
{
    return "wifi_020000000000_%1_managed_psk"_s.arg(number, 2, 10, QLatin1Char('0'));
}

QVariantMap ethernet(const QString &interfaceName)
{
    return {{"Interface"_s, interfaceName}};
}

QVariantMap properties(const QString &interfaceName, const QString &stateWord)
{
    return {{EthernetKey, ethernet(interfaceName)}, {StateKey, stateWord}};
}

/// ConnMan moves the service to another state and tells so, and nothing else.
void moveTo(MirrorWorld &world, const QString &stateWord)
{
    world.simulator().setServiceProperty(Service, StateKey, stateWord, true);
    world.emitPropertyChanged(MirrorWorld::pathOf(Service), StateKey, stateWord);
    world.deliver();
}

/// A manager with one service on wlan0, in a state that has been reported: no report is due any more.
///
/// The service changes its interface while its first state settles, which shows when that is over.
std::unique_ptr<RecordedManager> settledManager(MirrorWorld &world, const QString &stateWord)
{
    const QString path = world.addService(Service, properties("early0"_s, stateWord)).path();
    auto recorded = std::make_unique<RecordedManager>(world);
    QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    world.simulator().setServiceProperty(Service, EthernetKey, ethernet(Wlan), true);
    world.emitPropertyChanged(path, EthernetKey, ethernet(Wlan));
    if (!reports.wait(LatestMs)) {
        qCritical() << "The first state has not settled";
    }
    recorded->announcements.clear();
    return recorded;
}

} // namespace

class ConnmanManagerInterfaceStatesTest : public QObject
{
    Q_OBJECT

private slots:
    void highestStateOfTheServicesCounts_data();
    void highestStateOfTheServicesCounts();
    void everyInterfaceIsReportedForItself();
    void serviceWithoutAnInterfaceNeverCounts_data();
    void serviceWithoutAnInterfaceNeverCounts();
    void serviceWithoutAKnownStateCountsAsUnknown();
    void changeOfOneServiceLooksAtNoOther();

    void unchangedStateIsNotReportedAgain();
    void changedStateIsReportedByTheNextAnnouncement();
    void interfaceThatLosesItsLastServiceIsReportedUnknownOnce();
    void interfaceThatComesBackIsReportedAgain();
    void interfaceKeepsItsStateWhileAnotherServiceHoldsIt();
    void serviceThatMovesToAnotherInterfaceTakesItsStateAlong();
    void removalAloneReportsNothing();
    void receiverMayChangeTheRegistryDuringTheReport();
    void updateWithinTheReportReportsNothingTwice();

    void changeToOnlineIsReportedTwoSecondsLater();
    void changeIsToldAtOnceAndReportedWhenSettled();
    void leavingOnlineSchedulesNoReport();
    void stateThatDoesNotSettleIsNeverReported();
    void severalChangesWithinTheSettlingTimeAreOneReport();
    void removedServiceThatIsHeldStillSchedulesAReport();
};

void ConnmanManagerInterfaceStatesTest::highestStateOfTheServicesCounts_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<State>("expected");
    const auto row = [](const char *words, State expected) {
        QTest::newRow(words) << QString(QLatin1String(words)).split(QLatin1Char(' ')) << expected;
    };
    row("online", State::Online);
    row("idle online", State::Online);
    row("online ready configuration association idle failure disconnect", State::Online);
    row("disconnect failure idle association configuration ready", State::Ready);
    row("ready configuration", State::Ready);
    row("association configuration", State::Configuration);
    row("association idle", State::Association);
    row("failure idle", State::Idle);
    row("disconnect failure", State::Failure);
    row("disconnect", State::Disconnect);
    row("idle idle", State::Idle);
}

void ConnmanManagerInterfaceStatesTest::highestStateOfTheServicesCounts()
{
    QFETCH(QStringList, words);
    QFETCH(State, expected);
    MirrorWorld world;
    for (int i = 0; i < words.size(); ++i) {
        world.addService(identifier(i), properties(Wlan, words[i]));
    }
    const RecordedManager recorded(world);
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, expected)});
}

void ConnmanManagerInterfaceStatesTest::everyInterfaceIsReportedForItself()
{
    MirrorWorld world;
    world.addService(identifier(1), properties(Wlan, "idle"_s));
    world.addService(identifier(2), properties(Wire, "online"_s));
    const RecordedManager recorded(world);
    QStringList lines = recorded.interfaceLines();
    lines.sort();
    const QStringList expected{interfaceIs(Wire, State::Online), interfaceIs(Wlan, State::Idle)};
    QCOMPARE(lines, expected);
}

void ConnmanManagerInterfaceStatesTest::serviceWithoutAnInterfaceNeverCounts_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("empty name") << QVariant(ethernet(QString()));
    QTest::newRow("no name") << QVariant(QVariantMap());
    QTest::newRow("no dictionary") << QVariant("wlan0"_s);
}

void ConnmanManagerInterfaceStatesTest::serviceWithoutAnInterfaceNeverCounts()
{
    QFETCH(QVariant, value);
    MirrorWorld world;
    world.addService(identifier(1), {{EthernetKey, value}, {StateKey, "online"_s}});
    world.addService(identifier(2), properties(Wlan, "idle"_s));
    RecordedManager recorded(world);
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Idle)});
    world.emitServicesChanged({}, {MirrorWorld::pathOf(identifier(1))});
    world.deliver();
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Idle)});
}

void ConnmanManagerInterfaceStatesTest::serviceWithoutAKnownStateCountsAsUnknown()
{
    MirrorWorld world;
    world.addService(identifier(1), properties(Wlan, "dreaming"_s));
    const RecordedManager recorded(world);
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Unknown)});
}

// Among thousands of services that would be thousands of looks. Looking at a service without an interface
// leaves a line.
void ConnmanManagerInterfaceStatesTest::changeOfOneServiceLooksAtNoOther()
{
    MirrorWorld world;
    world.addService(identifier(1), {{EthernetKey, QVariantMap()}});
    world.addService(Service, properties(Wlan, "idle"_s));
    RecordedManager recorded(world);
    QVERIFY(!world.complaints().isEmpty());
    world.log().clear();
    world.simulator().setServiceProperty(Service, StateKey, "ready"_s, true);
    world.emitServicesChanged({MirrorWorld::pathOf(Service)}, {});
    world.deliver();
    QVERIFY(recorded.interfaceLines().contains(interfaceIs(Wlan, State::Ready)));
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanManagerInterfaceStatesTest::unchangedStateIsNotReportedAgain()
{
    MirrorWorld world;
    world.addService(identifier(1), properties(Wlan, "ready"_s));
    RecordedManager recorded(world);
    recorded.announcements.clear();
    QVERIFY(recorded.manager.updateServices());
    world.emitServicesChanged({MirrorWorld::pathOf(identifier(1))}, {});
    world.deliver();
    QCOMPARE(recorded.interfaceLines(), QStringList());
}

void ConnmanManagerInterfaceStatesTest::changedStateIsReportedByTheNextAnnouncement()
{
    MirrorWorld world;
    world.addService(identifier(1), properties(Wlan, "idle"_s));
    RecordedManager recorded(world);
    recorded.announcements.clear();
    world.simulator().setServiceProperty(identifier(1), StateKey, "ready"_s, true);
    world.emitServicesChanged({MirrorWorld::pathOf(identifier(1))}, {});
    world.deliver();
    const QStringList expected{stateOf(identifier(1), State::Ready), interfaceIs(Wlan, State::Ready)};
    QCOMPARE(recorded.announcements.lines(), expected);
}

void ConnmanManagerInterfaceStatesTest::interfaceThatLosesItsLastServiceIsReportedUnknownOnce()
{
    MirrorWorld world;
    world.addService(identifier(1), properties(Wlan, "ready"_s));
    RecordedManager recorded(world);
    recorded.announcements.clear();
    world.emitServicesChanged({}, {MirrorWorld::pathOf(identifier(1))});
    world.deliver();
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Unknown)});
    world.emitServicesChanged({}, {});
    world.emitServicesChanged({}, {});
    world.deliver();
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Unknown)});
}

void ConnmanManagerInterfaceStatesTest::interfaceThatComesBackIsReportedAgain()
{
    MirrorWorld world;
    const QString path = world.addService(identifier(1), properties(Wlan, "ready"_s)).path();
    RecordedManager recorded(world);
    world.emitServicesChanged({}, {path});
    world.emitServicesChanged({path}, {});
    world.deliver();
    const QStringList expected{interfaceIs(Wlan, State::Ready), interfaceIs(Wlan, State::Unknown),
                               interfaceIs(Wlan, State::Ready)};
    QCOMPARE(recorded.interfaceLines(), expected);
}

void ConnmanManagerInterfaceStatesTest::interfaceKeepsItsStateWhileAnotherServiceHoldsIt()
{
    MirrorWorld world;
    world.addService(identifier(1), properties(Wlan, "idle"_s));
    world.addService(identifier(2), properties(Wlan, "ready"_s));
    RecordedManager recorded(world);
    recorded.announcements.clear();
    world.emitServicesChanged({}, {MirrorWorld::pathOf(identifier(1))});
    world.deliver();
    QCOMPARE(recorded.interfaceLines(), QStringList());
    world.emitServicesChanged({MirrorWorld::pathOf(identifier(1))}, {MirrorWorld::pathOf(identifier(2))});
    world.deliver();
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Idle)});
}

void ConnmanManagerInterfaceStatesTest::serviceThatMovesToAnotherInterfaceTakesItsStateAlong()
{
    MirrorWorld world;
    const QString path = world.addService(identifier(1), properties(Wlan, "ready"_s)).path();
    RecordedManager recorded(world);
    recorded.announcements.clear();
    world.simulator().setServiceProperty(identifier(1), EthernetKey, ethernet(Wire), true);
    world.emitServicesChanged({path}, {});
    world.deliver();
    QStringList lines = recorded.interfaceLines();
    lines.sort();
    const QStringList expected{interfaceIs(Wire, State::Ready), interfaceIs(Wlan, State::Unknown)};
    QCOMPARE(lines, expected);
}

void ConnmanManagerInterfaceStatesTest::removalAloneReportsNothing()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(identifier(1), properties(Wlan, "ready"_s));
    RecordedManager recorded(world);
    recorded.announcements.clear();
    recorded.manager.remService(path);
    QCOMPARE(recorded.announcements.lines(), QStringList());
    world.emitServicesChanged({}, {});
    world.deliver();
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Unknown)});
}

void ConnmanManagerInterfaceStatesTest::receiverMayChangeTheRegistryDuringTheReport()
{
    MirrorWorld world;
    const QDBusObjectPath first = world.addService(identifier(1), properties(Wlan, "ready"_s));
    world.addService(identifier(2), properties(Wire, "idle"_s));
    ConnmanManager manager(world.connection(), nullptr);
    ManagerAnnouncements announcements(manager);
    bool isRemoved = false;
    connect(&manager, &ConnmanManager::interfaceStateChanged, this, [&] {
        if (isRemoved) {
            return;
        }
        isRemoved = true;
        manager.remService(first);
        manager.updateServices();
    });
    QVERIFY(manager.updateServices());
    QVERIFY(isRemoved);
    QVERIFY(announcements.lines("interface"_s).contains(interfaceIs(Wlan, State::Ready)));
    QVERIFY(announcements.lines("interface"_s).contains(interfaceIs(Wire, State::Idle)));
    QCOMPARE(manager.services().size(), 2);
}

void ConnmanManagerInterfaceStatesTest::updateWithinTheReportReportsNothingTwice()
{
    MirrorWorld world;
    world.addService(identifier(1), properties(Wlan, "ready"_s));
    world.addService(identifier(2), properties(Wire, "idle"_s));
    ConnmanManager manager(world.connection(), nullptr);
    const ManagerAnnouncements announcements(manager);
    bool isUpdated = false;
    connect(&manager, &ConnmanManager::interfaceStateChanged, this, [&] {
        if (!isUpdated) {
            isUpdated = true;
            manager.updateServices();
        }
    });
    QVERIFY(manager.updateServices());
    QVERIFY(isUpdated);
    QStringList lines = announcements.lines("interface"_s);
    lines.sort();
    const QStringList expected{interfaceIs(Wire, State::Idle), interfaceIs(Wlan, State::Ready)};
    QCOMPARE(lines, expected);
}

// The timers of a thread end in the order of their times, however busy the machine is.
void ConnmanManagerInterfaceStatesTest::changeToOnlineIsReportedTwoSecondsLater()
{
    MirrorWorld world;
    const auto recorded = settledManager(world, "ready"_s);
    const QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    int early = -1;
    int late = -1;
    connect(&recorded->manager, &ConnmanManager::serviceStateChanged, this, [&] {
        QTimer::singleShot(1500, Qt::PreciseTimer, &reports, [&] { early = reports.count(); });
        QTimer::singleShot(2500, Qt::PreciseTimer, &reports, [&] { late = reports.count(); });
    });
    moveTo(world, "online"_s);
    QTRY_VERIFY_WITH_TIMEOUT(late >= 0, LatestMs);
    QCOMPARE(early, 0);
    QCOMPARE(late, 1);
    const QStringList expected{stateOf(Service, State::Online), interfaceIs(Wlan, State::Online)};
    QCOMPARE(recorded->announcements.lines(), expected);
}

void ConnmanManagerInterfaceStatesTest::changeIsToldAtOnceAndReportedWhenSettled()
{
    MirrorWorld world;
    const auto recorded = settledManager(world, "idle"_s);
    QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    moveTo(world, "association"_s);
    QCOMPARE(recorded->announcements.lines(), {stateOf(Service, State::Association)});
    QVERIFY(reports.wait(LatestMs));
    QCOMPARE(recorded->interfaceLines(), {interfaceIs(Wlan, State::Association)});
}

void ConnmanManagerInterfaceStatesTest::leavingOnlineSchedulesNoReport()
{
    MirrorWorld world;
    const auto recorded = settledManager(world, "online"_s);
    QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    moveTo(world, "ready"_s);
    QCOMPARE(recorded->announcements.lines(), {stateOf(Service, State::Ready)});
    QVERIFY(!reports.wait(TooLateMs));
    // It was there to be reported all the time.
    recorded->manager.updateServices();
    QCOMPARE(recorded->interfaceLines(), {interfaceIs(Wlan, State::Ready)});
}

void ConnmanManagerInterfaceStatesTest::stateThatDoesNotSettleIsNeverReported()
{
    MirrorWorld world;
    const auto recorded = settledManager(world, "ready"_s);
    QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    moveTo(world, "association"_s);
    moveTo(world, "ready"_s);
    const QStringList expected{stateOf(Service, State::Association), stateOf(Service, State::Ready)};
    QCOMPARE(recorded->announcements.lines(), expected);
    QVERIFY(!reports.wait(TooLateMs));
}

void ConnmanManagerInterfaceStatesTest::severalChangesWithinTheSettlingTimeAreOneReport()
{
    MirrorWorld world;
    const auto recorded = settledManager(world, "idle"_s);
    QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    moveTo(world, "association"_s);
    moveTo(world, "configuration"_s);
    moveTo(world, "ready"_s);
    QVERIFY(reports.wait(LatestMs));
    QVERIFY(!reports.wait(TooLateMs));
    QCOMPARE(recorded->interfaceLines(), {interfaceIs(Wlan, State::Ready)});
}

void ConnmanManagerInterfaceStatesTest::removedServiceThatIsHeldStillSchedulesAReport()
{
    MirrorWorld world;
    const auto recorded = settledManager(world, "ready"_s);
    QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    const std::shared_ptr<ConnmanService> held = recorded->manager.services().constFirst();
    recorded->manager.remService(QDBusObjectPath(MirrorWorld::pathOf(Service)));
    moveTo(world, "disconnect"_s);
    QVERIFY(reports.wait(LatestMs));
    const QStringList expected{stateOf(Service, State::Disconnect), interfaceIs(Wlan, State::Unknown)};
    QCOMPARE(recorded->announcements.lines(), expected);
}

static const Suite<ConnmanManagerInterfaceStatesTest> suite;
#include "ConnmanManagerInterfaceStatesTest.moc"
