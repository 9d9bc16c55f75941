#include "ConnectingFixture.h"
#include "EventWait.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>
#include <QTimer>

using namespace test_support;
using State = ConnmanService::State;

namespace {
const QString connmanName = "net.connman"_s;
}

/// Connecting is where the event loop is entered again: what may happen inside, on a ConnMan that asks the
/// agent. Nothing may crash or wait for ever, everybody gets an answer.
class ReentrancyTest : public ConnectingFixture
{
    Q_OBJECT

private slots:
    void agentIsAskedDuringConnect();
    void wrongCredentialsAreReportedDuringConnect();
    void refusingAgentEndsConnect();
    void stateChangesAreToldDuringConnect();
    void propertiesChangeDuringConnect();
    void serviceThatLeavesTheRegistryWhileItConnectsAnswers();
    void registryIsReloadedDuringConnect();
    void registryEndsDuringConnect();
    void connmanLeavingEndsConnect();
    void connmanComesBackDuringConnect();
    void connmanRestartingDuringConnectCanBeAskedAgain();
};

void ReentrancyTest::agentIsAskedDuringConnect()
{
    const QString home = addNetwork("HomeNet", "correct horse");
    agent().setRequest(home, "correct horse"_s, ConnmanAgent::RequestType::Psk, QString());

    QVERIFY(service(home)->connect());
    QTRY_VERIFY_WITH_TIMEOUT(service(home)->state() >= State::Ready, eventTimeoutMs);
    QCOMPARE(log().takeCriticals(), QStringList());
}

void ReentrancyTest::wrongCredentialsAreReportedDuringConnect()
{
    const QString home = addNetwork("HomeNet", "correct horse");
    agent().setRequest(home, "wrong horse"_s, ConnmanAgent::RequestType::Psk, QString());

    QVERIFY(!service(home)->connect());
    QCOMPARE(agent().lastError(), "invalid-key"_s);
    QCOMPARE(criticalLines().size(), 1);
    QVERIFY(criticalLines().constFirst().endsWith(
        "QDBusError(\"net.connman.Error.Failed\", \"Input/output error\")"_s));
}

void ReentrancyTest::refusingAgentEndsConnect()
{
    const QString home = addNetwork("HomeNet", "correct horse");

    QVERIFY(!service(home)->connect());
    QVERIFY(service(home)->state() < State::Association);
    QCOMPARE(criticalLines().size(), 1);
}

void ReentrancyTest::stateChangesAreToldDuringConnect()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    connman().setTiming("association"_s, 300); // or the first refresh sees a later state
    connman().setTiming("online"_s, 60000);    // or the one of "ready" does
    QList<State> states;
    connect(connecting.get(), &ConnmanService::stateChanged, context(),
            [&states](State state) { states.append(state); });

    QVERIFY(connecting->connect());
    QVERIFY(!states.isEmpty());
    QCOMPARE(states.constFirst(), State::Association);
    QTRY_VERIFY_WITH_TIMEOUT(states.contains(State::Ready), eventTimeoutMs);
}

void ReentrancyTest::propertiesChangeDuringConnect()
{
    const QString cafe = addNetwork("Cafe");
    const Fault slow = delayConnect(cafe, 200);
    onConnect([&] { connman().setServiceProperty(cafe, "Strength"_s, QVariant::fromValue<uchar>(13)); });

    QVERIFY(service(cafe)->connect());
    QCOMPARE(service(cafe)->strength(), 13);
}

void ReentrancyTest::serviceThatLeavesTheRegistryWhileItConnectsAnswers()
{
    const QString cafe = addNetwork("Cafe");
    const Fault slow = delayConnect(cafe, 300);
    onConnect([&] { connman().removeService(cafe); });

    ServicePtr connecting = service(cafe);
    bool removedInside = false;
    QTimer watch;
    connect(&watch, &QTimer::timeout, context(),
            [&] { removedInside = removedInside || service(cafe) == nullptr; });
    watch.start(10);
    QVERIFY(!connecting->connect());
    QVERIFY(removedInside);
    QCOMPARE(connecting->identifier(), cafe);
    QCOMPARE(criticalLines(), QStringList());
}

void ReentrancyTest::registryIsReloadedDuringConnect()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    const Fault slow = delayConnect(cafe, 200);
    onConnect([&] {
        manager().remService(QDBusObjectPath(connecting->path()));
        manager().updateServices();
    });

    QVERIFY(connecting->connect());
    QVERIFY(service(cafe) != nullptr);
    QVERIFY(service(cafe) != connecting);
}

void ReentrancyTest::registryEndsDuringConnect()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    const Fault slow = delayConnect(cafe, 200);
    bool hasEnded = false;
    onConnect([&] {
        endManager();
        hasEnded = true;
    });

    QVERIFY(connecting->connect());
    QVERIFY(hasEnded);
}

void ReentrancyTest::connmanLeavingEndsConnect()
{
    const QString cafe = addNetwork("Cafe");
    const Fault slow = delayConnect(cafe, 60000);
    onConnect([&] { connman().setPresent(connmanName, false); });

    QVERIFY(!service(cafe)->connect());
    QVERIFY(criticalLines().constFirst().contains("\"org.freedesktop.DBus.Error.NoReply\""_s));
}

void ReentrancyTest::connmanComesBackDuringConnect()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    const Fault slow = delayConnect(cafe, 60000);
    onConnect([&] {
        connman().setPresent(connmanName, false);
        connman().setPresent(connmanName, true);
    });

    QVERIFY(!connecting->connect());
    // The disconnect that follows finds the new ConnMan.
    QVERIFY(
        !connman().callsStartingWith(connecting->path() + " net.connman.Service.Disconnect()"_s).isEmpty());
}

void ReentrancyTest::connmanRestartingDuringConnectCanBeAskedAgain()
{
    const QString cafe = addNetwork("Cafe");
    const Fault slow = delayConnect(cafe, 60000);
    onConnect([&] { connman().restartConnman(); });
    QVERIFY(!service(cafe)->connect());

    const QString again = addNetwork("Hotel");
    QVERIFY(service(again)->connect());
}

static const Suite<ReentrancyTest> reentrancyTest;
#include "ReentrancyTest.moc"
