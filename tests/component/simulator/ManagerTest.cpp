// ConnMan's manager, its registered agents, and what it answers to nonsense.

#include "DeviceFixture.h"
#include "Suite.h"
#include "Text.h"
#include <QDBusObjectPath>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

class ManagerTest : public DeviceFixture
{
    Q_OBJECT

private slots:
    void managerTellsItsState();
    void oneAgentForEachClient();
    void unknownPathsAndMethodsAreRefusedAsByLibdbus_data();
    void unknownPathsAndMethodsAreRefusedAsByLibdbus();
    void otherArgumentsMakeAnUnknownMethod();
};

void ManagerTest::managerTellsItsState()
{
    QCOMPARE(m_client->manager("GetProperties"_s).text(),
             "{\"State\": <\"idle\">, \"OfflineMode\": <false>, \"SessionMode\": <false>}"_s);
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForSignal(" PropertyChanged(\"State\", <\"online\">)"_s));
    QVERIFY(m_client->manager("GetProperties"_s).text().contains("\"State\": <\"online\">"_s));
}

void ManagerTest::oneAgentForEachClient()
{
    const QVariantList path{QVariant::fromValue(QDBusObjectPath("/an/agent"))};
    QCOMPARE(m_client->manager("UnregisterAgent"_s, path).text(),
             "net.connman.Error.NotRegistered: Not registered"_s);
    QCOMPARE(m_client->manager("RegisterAgent"_s, path).text(), QString());
    QCOMPARE(m_client->manager("RegisterAgent"_s, path).text(),
             "net.connman.Error.AlreadyExists: Already exists"_s);
    QCOMPARE(m_client->manager("UnregisterAgent"_s, path).text(), QString());
    QCOMPARE(m_simulator->agents(), QList<QDBusObjectPath>());
}

void ManagerTest::unknownPathsAndMethodsAreRefusedAsByLibdbus_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("error");
    const QString connect = "Connect"_s;
    const QString unknownObject = "UnknownObject"_s;
    const QString unknownMethod = "UnknownMethod"_s;
    QTest::newRow("service that is gone") << "/net/connman/service/gone"_s << connect << unknownObject;
    QTest::newRow("no such place") << "/nope"_s << connect << unknownObject;
    QTest::newRow("on the way") << "/net/connman"_s << connect << unknownMethod;
    QTest::newRow("other interface") << "/"_s << connect << unknownMethod;
    QTest::newRow("no such method") << "/net/connman/technology/wifi"_s
                                    << "Nope"_s << unknownMethod;
}

void ManagerTest::unknownPathsAndMethodsAreRefusedAsByLibdbus()
{
    QFETCH(QString, path);
    QFETCH(QString, member);
    QFETCH(QString, error);
    QCOMPARE(m_client->call("net.connman"_s, path, "net.connman.Service"_s, member).text(),
             "org.freedesktop.DBus.Error.%1: Method \"%2\" with signature \"\" on interface "
             "\"net.connman.Service\" doesn't exist\n"_s.arg(error, member));
}

void ManagerTest::otherArgumentsMakeAnUnknownMethod()
{
    QCOMPARE(m_client->technology("wifi"_s, "Scan"_s, {1}).text(),
             "org.freedesktop.DBus.Error.UnknownMethod: Method \"Scan\" with signature \"i\" on interface "
             "\"net.connman.Technology\" doesn't exist\n"_s);
}

static const Suite<ManagerTest> managerTest;
#include "ManagerTest.moc"
