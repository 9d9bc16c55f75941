// When the change of a service's state is reported as its interface's: once it has settled.

#include "ConnmanFixture.h"
#include "ConnmanManager.h"
#include "ManagerScene.h"
#include "Suite.h"
#include "Text.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace test_support;

namespace {

/// How much later than after the two seconds in which a state settles its report may come on a busy machine.
constexpr int LatestMs = 8000;
/// Long enough for a report that must not come.
constexpr int TooLateMs = 3000;

/// ConnMan moves the service to another state and tells so, and nothing else.
void moveTo(ConnmanFixture &fixture, const QString &stateWord)
{
    fixture.connman().setServiceProperty(A, StateKey, stateWord, true);
    fixture.emitPropertyChanged(ConnmanFixture::pathOf(A), StateKey, stateWord);
    fixture.deliver();
}

/// A manager with one service on wlan0, in a state that has been reported: no report is due any more.
///
/// The service changes its interface while its first state settles, which shows when that is over.
std::unique_ptr<ManagerScene> settledManager(ConnmanFixture &fixture, const QString &stateWord)
{
    const QString path = fixture.addService(A, onInterface("early0"_s, stateWord)).path();
    auto recorded = std::make_unique<ManagerScene>(fixture);
    QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    fixture.connman().setServiceProperty(A, EthernetKey, ethernet(Wlan), true);
    fixture.emitPropertyChanged(path, EthernetKey, ethernet(Wlan));
    if (!reports.wait(LatestMs)) {
        qCritical() << "The first state has not settled";
    }
    recorded->announcements.clear();
    return recorded;
}

} // namespace

class InterfaceStateSettlingTest : public ConnmanFixture
{
    Q_OBJECT

private slots:
    void changeToOnlineIsReportedTwoSecondsLater();
    void changeIsToldAtOnceAndReportedWhenSettled();
    void leavingOnlineSchedulesNoReport();
    void stateThatDoesNotSettleIsNeverReported();
    void severalChangesWithinTheSettlingTimeAreOneReport();
    void removedServiceThatIsHeldStillSchedulesAReport();
};

// The timers of a thread end in the order of their times, however busy the machine is.
void InterfaceStateSettlingTest::changeToOnlineIsReportedTwoSecondsLater()
{
    const auto recorded = settledManager(*this, "ready"_s);
    const QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    int early = -1;
    int late = -1;
    connect(&recorded->manager, &ConnmanManager::serviceStateChanged, this, [&] {
        QTimer::singleShot(1500, Qt::PreciseTimer, &reports, [&] { early = reports.count(); });
        QTimer::singleShot(2500, Qt::PreciseTimer, &reports, [&] { late = reports.count(); });
    });
    moveTo(*this, "online"_s);
    QTRY_VERIFY_WITH_TIMEOUT(late >= 0, LatestMs);
    QCOMPARE(early, 0);
    QCOMPARE(late, 1);
    const QStringList expected{stateOf(A, State::Online), interfaceIs(Wlan, State::Online)};
    QCOMPARE(recorded->announcements.lines(), expected);
}

void InterfaceStateSettlingTest::changeIsToldAtOnceAndReportedWhenSettled()
{
    const auto recorded = settledManager(*this, "idle"_s);
    QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    moveTo(*this, "association"_s);
    QCOMPARE(recorded->announcements.lines(), {stateOf(A, State::Association)});
    QVERIFY(reports.wait(LatestMs));
    QCOMPARE(recorded->interfaceLines(), {interfaceIs(Wlan, State::Association)});
}

void InterfaceStateSettlingTest::leavingOnlineSchedulesNoReport()
{
    const auto recorded = settledManager(*this, "online"_s);
    QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    moveTo(*this, "ready"_s);
    QCOMPARE(recorded->announcements.lines(), {stateOf(A, State::Ready)});
    QVERIFY(!reports.wait(TooLateMs));
    // It was there to be reported all the time.
    recorded->manager.updateServices();
    QCOMPARE(recorded->interfaceLines(), {interfaceIs(Wlan, State::Ready)});
}

void InterfaceStateSettlingTest::stateThatDoesNotSettleIsNeverReported()
{
    const auto recorded = settledManager(*this, "ready"_s);
    QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    moveTo(*this, "association"_s);
    moveTo(*this, "ready"_s);
    const QStringList expected{stateOf(A, State::Association), stateOf(A, State::Ready)};
    QCOMPARE(recorded->announcements.lines(), expected);
    QVERIFY(!reports.wait(TooLateMs));
}

void InterfaceStateSettlingTest::severalChangesWithinTheSettlingTimeAreOneReport()
{
    const auto recorded = settledManager(*this, "idle"_s);
    QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    moveTo(*this, "association"_s);
    moveTo(*this, "configuration"_s);
    moveTo(*this, "ready"_s);
    QVERIFY(reports.wait(LatestMs));
    QVERIFY(!reports.wait(TooLateMs));
    QCOMPARE(recorded->interfaceLines(), {interfaceIs(Wlan, State::Ready)});
}

void InterfaceStateSettlingTest::removedServiceThatIsHeldStillSchedulesAReport()
{
    const auto recorded = settledManager(*this, "ready"_s);
    QSignalSpy reports(&recorded->manager, &ConnmanManager::interfaceStateChanged);
    const std::shared_ptr<ConnmanService> held = recorded->manager.services().constFirst();
    recorded->manager.remService(QDBusObjectPath(pathOf(A)));
    moveTo(*this, "disconnect"_s);
    QVERIFY(reports.wait(LatestMs));
    const QStringList expected{stateOf(A, State::Disconnect), interfaceIs(Wlan, State::Unknown)};
    QCOMPARE(recorded->announcements.lines(), expected);
}

static const Suite<InterfaceStateSettlingTest> interfaceStateSettlingTest;
#include "InterfaceStateSettlingTest.moc"
