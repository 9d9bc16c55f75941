#include "OperationsScene.h"
#include "Suite.h"
#include <QDBusArgument>
#include <QDBusVariant>
#include <QTest>

using namespace scene;
using namespace test_support;

/// Values of ConnMan's that no reply can carry: the client gets its answer without them, and the daemon keeps
/// its connection.
class HostileRepliesTest : public QObject
{
    Q_OBJECT
private slots:
    void valueNestedTooDeeplyIsLeftOut_data();
    void valueNestedTooDeeplyIsLeftOut();
    void deepValueThatStillFitsIsPassedOn();
};

namespace {
/// The deepest that a reply of networks() can carry: 64 containers, of which six are its own.
constexpr int deepest = 58;

QVariant nested(int depth)
{
    QVariant value = 7;
    for (int level = 0; level < depth; ++level) {
        value = QVariant::fromValue(QDBusVariant(value));
    }
    return value;
}

const QString leftOut = "NetworkManager|warning|Left out of the reply, the bus would not take it: \"Deep\""_s;
} // namespace

void HostileRepliesTest::valueNestedTooDeeplyIsLeftOut_data()
{
    QTest::addColumn<int>("depth");
    QTest::newRow("one too many") << deepest + 1;
    QTest::newRow("as deep as ConnMan can tell it") << deepest + 3;
}

void HostileRepliesTest::valueNestedTooDeeplyIsLeftOut()
{
    QFETCH(int, depth);
    Operations device;
    device.daemon.setLoggingRules("NetworkManager.warning=true"_s);
    device.simulator.addService(home,
                                {{"Name"_s, "Home"_s}, {"IPv6"_s, QVariantMap{{"Method"_s, "auto"_s}}}});
    QVERIFY(device.begin());
    device.simulator.setServiceProperty(home, "Deep"_s, nested(depth), true);
    device.reportState(home, "ready"_s);
    const auto networks = qdbus_cast<QVariantMap>(device.client.call("networks"));
    const auto properties = qdbus_cast<QVariantMap>(networks.value(home));
    QCOMPARE(properties.value("Name"_s).toString(), "Home"_s);
    QVERIFY(!properties.contains("Deep"_s));
    QCOMPARE(device.log().lines().count(leftOut), 1);
    QCOMPARE(device.client.call("activeNetworks").toStringList(), {"Home"_s});
}

void HostileRepliesTest::deepValueThatStillFitsIsPassedOn()
{
    Operations device;
    device.simulator.addService(
        home,
        {{"Name"_s, "Home"_s}, {"IPv6"_s, QVariantMap{{"Method"_s, "auto"_s}}}, {"Deep"_s, nested(deepest)}});
    QVERIFY(device.begin());
    const auto networks = qdbus_cast<QVariantMap>(device.client.call("networks"));
    QVERIFY(qdbus_cast<QVariantMap>(networks.value(home)).contains("Deep"_s));
}

static const Suite<HostileRepliesTest> hostileRepliesTest;
#include "HostileRepliesTest.moc"
