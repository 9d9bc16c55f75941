// ConnMan's manager and clock, its registered agents and counters, and what it answers to nonsense.

#include "DeviceFixture.h"
#include "Suite.h"
#include "Text.h"
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

class ManagerTest : public DeviceFixture
{
    Q_OBJECT

private slots:
    void managerTellsItsState();
    void offlineModeIsToldAndChecked();
    void oneAgentForEachClient();
    void oneCounterForEachPath();
    void clockTellsTheTime();
    void unknownPathsAndMethodsAreRefusedAsByLibdbus_data();
    void unknownPathsAndMethodsAreRefusedAsByLibdbus();
};

void ManagerTest::managerTellsItsState()
{
    QCOMPARE(m_client->manager("GetProperties"_s).text(),
             "{\"State\": <\"idle\">, \"OfflineMode\": <false>, \"SessionMode\": <false>}"_s);
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForSignal(" PropertyChanged(\"State\", <\"online\">)"_s));
    QVERIFY(m_client->manager("GetProperties"_s).text().contains("\"State\": <\"online\">"_s));
}

void ManagerTest::offlineModeIsToldAndChecked()
{
    const auto set = [this](const char *property, const QVariant &value) {
        return m_client
            ->manager("SetProperty"_s,
                      {QString::fromLatin1(property), QVariant::fromValue(QDBusVariant(value))})
            .text();
    };
    QCOMPARE(set("OfflineMode", true), QString());
    QVERIFY(m_client->waitForSignal(" PropertyChanged(\"OfflineMode\", <true>)"_s));
    QVERIFY(m_client->waitForSignal(" PropertyChanged(\"State\", <\"offline\">)"_s));
    QCOMPARE(set("OfflineMode", 1), "net.connman.Error.InvalidArguments: Invalid arguments"_s);
    QCOMPARE(set("Nope", true), "net.connman.Error.InvalidProperty: Invalid property"_s);
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

void ManagerTest::oneCounterForEachPath()
{
    const QVariant path = QVariant::fromValue(QDBusObjectPath("/a/counter"));
    QCOMPARE(m_client->manager("RegisterCounter"_s, {path, 1U, 1U}).text(), QString());
    QCOMPARE(m_client->manager("RegisterCounter"_s, {path, 1U, 1U}).text(),
             "net.connman.Error.AlreadyExists: Already exists"_s);
    QCOMPARE(m_client->manager("UnregisterCounter"_s, {path}).text(), QString());
    QCOMPARE(m_client->manager("UnregisterCounter"_s, {path}).text(),
             "net.connman.Error.NotRegistered: Not registered"_s);
}

void ManagerTest::clockTellsTheTime()
{
    const Answer answer = m_client->call("net.connman"_s, "/"_s, "net.connman.Clock"_s, "GetProperties"_s);
    QVERIFY2(answer.text().contains("\"Time\": <uint64 "_s), qPrintable(answer.text()));
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

static const Suite<ManagerTest> suite;
#include "ManagerTest.moc"
