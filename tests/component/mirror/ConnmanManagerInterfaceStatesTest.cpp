// One state per network interface, derived from the services on it.

#include "ConnmanFixture.h"
#include "ConnmanManager.h"
#include "ManagerScene.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

using namespace test_support;

namespace {

const QLatin1String Wire("eth0");

QString identifier(int number)
{
    return "wifi_020000000000_%1_managed_psk"_s.arg(number, 2, 10, QLatin1Char('0'));
}

} // namespace

class ConnmanManagerInterfaceStatesTest : public ConnmanFixture
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
    for (int i = 0; i < words.size(); ++i) {
        addService(identifier(i), onInterface(Wlan, words[i]));
    }
    const ManagerScene recorded(*this);
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, expected)});
}

void ConnmanManagerInterfaceStatesTest::everyInterfaceIsReportedForItself()
{
    addService(identifier(1), onInterface(Wlan, "idle"_s));
    addService(identifier(2), onInterface(Wire, "online"_s));
    const ManagerScene recorded(*this);
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
    addService(identifier(1), {{EthernetKey, value}, {StateKey, "online"_s}});
    addService(identifier(2), onInterface(Wlan, "idle"_s));
    ManagerScene recorded(*this);
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Idle)});
    emitServicesChanged({}, {pathOf(identifier(1))});
    deliver();
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Idle)});
}

void ConnmanManagerInterfaceStatesTest::serviceWithoutAKnownStateCountsAsUnknown()
{
    addService(identifier(1), onInterface(Wlan, "dreaming"_s));
    const ManagerScene recorded(*this);
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Unknown)});
}

// Among thousands of services that would be thousands of looks. Looking at a service without an interface
// leaves a line.
void ConnmanManagerInterfaceStatesTest::changeOfOneServiceLooksAtNoOther()
{
    addService(identifier(1), {{EthernetKey, QVariantMap()}});
    addService(A, onInterface(Wlan, "idle"_s));
    ManagerScene recorded(*this);
    QVERIFY(!complaints().isEmpty());
    log().clear();
    connman().setServiceProperty(A, StateKey, "ready"_s, true);
    emitServicesChanged({pathOf(A)}, {});
    deliver();
    QVERIFY(recorded.interfaceLines().contains(interfaceIs(Wlan, State::Ready)));
    QCOMPARE(complaints(), QStringList());
}

void ConnmanManagerInterfaceStatesTest::unchangedStateIsNotReportedAgain()
{
    addService(identifier(1), onInterface(Wlan, "ready"_s));
    ManagerScene recorded(*this);
    recorded.announcements.clear();
    QVERIFY(recorded.manager.updateServices());
    emitServicesChanged({pathOf(identifier(1))}, {});
    deliver();
    QCOMPARE(recorded.interfaceLines(), QStringList());
}

void ConnmanManagerInterfaceStatesTest::changedStateIsReportedByTheNextAnnouncement()
{
    addService(identifier(1), onInterface(Wlan, "idle"_s));
    ManagerScene recorded(*this);
    recorded.announcements.clear();
    connman().setServiceProperty(identifier(1), StateKey, "ready"_s, true);
    emitServicesChanged({pathOf(identifier(1))}, {});
    deliver();
    const QStringList expected{stateOf(identifier(1), State::Ready), interfaceIs(Wlan, State::Ready)};
    QCOMPARE(recorded.announcements.lines(), expected);
}

void ConnmanManagerInterfaceStatesTest::interfaceThatLosesItsLastServiceIsReportedUnknownOnce()
{
    addService(identifier(1), onInterface(Wlan, "ready"_s));
    ManagerScene recorded(*this);
    recorded.announcements.clear();
    emitServicesChanged({}, {pathOf(identifier(1))});
    deliver();
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Unknown)});
    emitServicesChanged({}, {});
    emitServicesChanged({}, {});
    deliver();
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Unknown)});
}

void ConnmanManagerInterfaceStatesTest::interfaceThatComesBackIsReportedAgain()
{
    const QString path = addService(identifier(1), onInterface(Wlan, "ready"_s)).path();
    ManagerScene recorded(*this);
    emitServicesChanged({}, {path});
    emitServicesChanged({path}, {});
    deliver();
    const QStringList expected{interfaceIs(Wlan, State::Ready), interfaceIs(Wlan, State::Unknown),
                               interfaceIs(Wlan, State::Ready)};
    QCOMPARE(recorded.interfaceLines(), expected);
}

void ConnmanManagerInterfaceStatesTest::interfaceKeepsItsStateWhileAnotherServiceHoldsIt()
{
    addService(identifier(1), onInterface(Wlan, "idle"_s));
    addService(identifier(2), onInterface(Wlan, "ready"_s));
    ManagerScene recorded(*this);
    recorded.announcements.clear();
    emitServicesChanged({}, {pathOf(identifier(1))});
    deliver();
    QCOMPARE(recorded.interfaceLines(), QStringList());
    emitServicesChanged({pathOf(identifier(1))}, {pathOf(identifier(2))});
    deliver();
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Idle)});
}

void ConnmanManagerInterfaceStatesTest::serviceThatMovesToAnotherInterfaceTakesItsStateAlong()
{
    const QString path = addService(identifier(1), onInterface(Wlan, "ready"_s)).path();
    ManagerScene recorded(*this);
    recorded.announcements.clear();
    connman().setServiceProperty(identifier(1), EthernetKey, ethernet(Wire), true);
    emitServicesChanged({path}, {});
    deliver();
    QStringList lines = recorded.interfaceLines();
    lines.sort();
    const QStringList expected{interfaceIs(Wire, State::Ready), interfaceIs(Wlan, State::Unknown)};
    QCOMPARE(lines, expected);
}

void ConnmanManagerInterfaceStatesTest::removalAloneReportsNothing()
{
    const QDBusObjectPath path = addService(identifier(1), onInterface(Wlan, "ready"_s));
    ManagerScene recorded(*this);
    recorded.announcements.clear();
    recorded.manager.remService(path);
    QCOMPARE(recorded.announcements.lines(), QStringList());
    emitServicesChanged({}, {});
    deliver();
    QCOMPARE(recorded.interfaceLines(), {interfaceIs(Wlan, State::Unknown)});
}

void ConnmanManagerInterfaceStatesTest::receiverMayChangeTheRegistryDuringTheReport()
{
    const QDBusObjectPath first = addService(identifier(1), onInterface(Wlan, "ready"_s));
    addService(identifier(2), onInterface(Wire, "idle"_s));
    ConnmanManager manager(connection(), nullptr);
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
    addService(identifier(1), onInterface(Wlan, "ready"_s));
    addService(identifier(2), onInterface(Wire, "idle"_s));
    ConnmanManager manager(connection(), nullptr);
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

static const Suite<ConnmanManagerInterfaceStatesTest> connmanManagerInterfaceStatesTest;
#include "ConnmanManagerInterfaceStatesTest.moc"
