#include "ConnectingFixture.h"
#include "EventWait.h"
#include "Suite.h"
#include "Text.h"

#include <functional>
#include <QTest>

using namespace test_support;

/// What is asked of ConnMan while it connects, and from inside the wait for that.
class NestedCallsTest : public ConnectingFixture
{
    Q_OBJECT

private slots:
    void secondConnectOfTheSameServiceIsAnswered();
    void connectsOfTwoServicesNestAndAreBothAnswered();
    void connectsNestThreeDeep();
    void disconnectDuringConnectAbortsIt();
    void removeDuringConnectAbortsIt();
    void propertyIsWrittenDuringConnect();
};

void NestedCallsTest::secondConnectOfTheSameServiceIsAnswered()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    connman().setTiming("association"_s, 200);
    int innerResult = -1;
    onConnect([&] { innerResult = connecting->connect() ? 1 : 0; });

    QVERIFY(connecting->connect());
    QCOMPARE(innerResult, 0);
    QCOMPARE(criticalLines().size(), 1);
    QVERIFY(criticalLines().constFirst().endsWith(
        "QDBusError(\"net.connman.Error.InProgress\", \"In progress\")"_s));
}

void NestedCallsTest::connectsOfTwoServicesNestAndAreBothAnswered()
{
    const QString cafe = addNetwork("Cafe");
    const QString hotel = addNetwork("Hotel");
    const Fault slow = delayConnect(hotel, 300);
    const Fault outerAnswered = connman().injectFault("net.connman.Service"_s, "Connect"_s,
                                                      FaultKind::reply({}), service(cafe)->path());
    int innerResult = -1;
    // The outer reply arrives while the inner connect still waits.
    onConnect([&] { innerResult = service(hotel)->connect() ? 1 : 0; });

    QVERIFY(service(cafe)->connect());
    QTRY_COMPARE_WITH_TIMEOUT(innerResult, 1, eventTimeoutMs);
}

void NestedCallsTest::connectsNestThreeDeep()
{
    const QStringList identifiers{addNetwork("Cafe"), addNetwork("Hotel"), addNetwork("Train")};
    QStringList answered;
    const std::function<void(int)> connectFrom = [&](int index) {
        if (index + 1 < identifiers.size()) {
            onConnect([&, index] { connectFrom(index + 1); });
        }
        service(identifiers.at(index))->connect();
        answered.append(identifiers.at(index));
    };
    connectFrom(0);

    QTRY_COMPARE_WITH_TIMEOUT(answered.size(), 3, eventTimeoutMs);
}

void NestedCallsTest::disconnectDuringConnectAbortsIt()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    connman().setTiming("association"_s, 60000);
    int disconnected = -1;
    onConnect([&] { disconnected = connecting->disconnect() ? 1 : 0; });

    QVERIFY(!connecting->connect());
    QCOMPARE(disconnected, 1);
    QVERIFY(criticalLines().constLast().endsWith(
        "QDBusError(\"net.connman.Error.OperationAborted\", \"Operation aborted\")"_s));
}

void NestedCallsTest::removeDuringConnectAbortsIt()
{
    const QString cafe = addNetwork("Cafe");
    QVERIFY(service(cafe)->connect());
    QVERIFY(service(cafe)->disconnect());
    const ServicePtr connecting = service(cafe);
    // Removing begins with a return to DHCP, which makes ConnMan configure at once.
    connman().setTiming("association"_s, 60000);
    connman().setTiming("configuration"_s, 60000);
    int removed = -1;
    onConnect([&] { removed = connecting->remove() ? 1 : 0; });

    QVERIFY(!connecting->connect());
    QCOMPARE(removed, 1);
}

void NestedCallsTest::propertyIsWrittenDuringConnect()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    const Fault slow = delayConnect(cafe, 200);
    int written = -1;
    onConnect([&] { written = connecting->configureIpv6(false) ? 1 : 0; });

    QVERIFY(connecting->connect());
    QCOMPARE(written, 1);
}

static const Suite<NestedCallsTest> nestedCallsTest;
#include "NestedCallsTest.moc"
