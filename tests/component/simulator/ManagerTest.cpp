// ConnMan's manager and clock, its registered agents and counters, and what it answers to nonsense.

#include "DeviceFixture.h"
#include "Suite.h"
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
    QCOMPARE(m_client->manager(QStringLiteral("GetProperties")).text(),
             QStringLiteral("{\"State\": <\"idle\">, \"OfflineMode\": <false>, \"SessionMode\": <false>}"));
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForSignal(QStringLiteral(" PropertyChanged(\"State\", <\"online\">)")));
    QVERIFY(m_client->manager(QStringLiteral("GetProperties"))
                .text()
                .contains(QStringLiteral("\"State\": <\"online\">")));
}

void ManagerTest::offlineModeIsToldAndChecked()
{
    const auto set = [this](const char *property, const QVariant &value) {
        return m_client
            ->manager(QStringLiteral("SetProperty"),
                      {QString::fromLatin1(property), QVariant::fromValue(QDBusVariant(value))})
            .text();
    };
    QCOMPARE(set("OfflineMode", true), QString());
    QVERIFY(m_client->waitForSignal(QStringLiteral(" PropertyChanged(\"OfflineMode\", <true>)")));
    QVERIFY(m_client->waitForSignal(QStringLiteral(" PropertyChanged(\"State\", <\"offline\">)")));
    QCOMPARE(set("OfflineMode", 1), QStringLiteral("net.connman.Error.InvalidArguments: Invalid arguments"));
    QCOMPARE(set("Nope", true), QStringLiteral("net.connman.Error.InvalidProperty: Invalid property"));
}

void ManagerTest::oneAgentForEachClient()
{
    const QVariantList path{QVariant::fromValue(QDBusObjectPath("/an/agent"))};
    QCOMPARE(m_client->manager(QStringLiteral("UnregisterAgent"), path).text(),
             QStringLiteral("net.connman.Error.NotRegistered: Not registered"));
    QCOMPARE(m_client->manager(QStringLiteral("RegisterAgent"), path).text(), QString());
    QCOMPARE(m_client->manager(QStringLiteral("RegisterAgent"), path).text(),
             QStringLiteral("net.connman.Error.AlreadyExists: Already exists"));
    QCOMPARE(m_client->manager(QStringLiteral("UnregisterAgent"), path).text(), QString());
    QCOMPARE(m_simulator->agents(), QList<QDBusObjectPath>());
}

void ManagerTest::oneCounterForEachPath()
{
    const QVariant path = QVariant::fromValue(QDBusObjectPath("/a/counter"));
    QCOMPARE(m_client->manager(QStringLiteral("RegisterCounter"), {path, 1U, 1U}).text(), QString());
    QCOMPARE(m_client->manager(QStringLiteral("RegisterCounter"), {path, 1U, 1U}).text(),
             QStringLiteral("net.connman.Error.AlreadyExists: Already exists"));
    QCOMPARE(m_client->manager(QStringLiteral("UnregisterCounter"), {path}).text(), QString());
    QCOMPARE(m_client->manager(QStringLiteral("UnregisterCounter"), {path}).text(),
             QStringLiteral("net.connman.Error.NotRegistered: Not registered"));
}

void ManagerTest::clockTellsTheTime()
{
    const Answer answer =
        m_client->call(QStringLiteral("net.connman"), QStringLiteral("/"),
                       QStringLiteral("net.connman.Clock"), QStringLiteral("GetProperties"));
    QVERIFY2(answer.text().contains(QStringLiteral("\"Time\": <uint64 ")), qPrintable(answer.text()));
}

void ManagerTest::unknownPathsAndMethodsAreRefusedAsByLibdbus_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("error");
    const QString connect = QStringLiteral("Connect");
    const QString unknownObject = QStringLiteral("UnknownObject");
    const QString unknownMethod = QStringLiteral("UnknownMethod");
    QTest::newRow("service that is gone")
        << QStringLiteral("/net/connman/service/gone") << connect << unknownObject;
    QTest::newRow("no such place") << QStringLiteral("/nope") << connect << unknownObject;
    QTest::newRow("on the way") << QStringLiteral("/net/connman") << connect << unknownMethod;
    QTest::newRow("other interface") << QStringLiteral("/") << connect << unknownMethod;
    QTest::newRow("no such method") << QStringLiteral("/net/connman/technology/wifi")
                                    << QStringLiteral("Nope") << unknownMethod;
}

void ManagerTest::unknownPathsAndMethodsAreRefusedAsByLibdbus()
{
    QFETCH(QString, path);
    QFETCH(QString, member);
    QFETCH(QString, error);
    QCOMPARE(
        m_client->call(QStringLiteral("net.connman"), path, QStringLiteral("net.connman.Service"), member)
            .text(),
        QStringLiteral("org.freedesktop.DBus.Error.%1: Method \"%2\" with signature \"\" on interface "
                       "\"net.connman.Service\" doesn't exist\n")
            .arg(error, member));
}

static const Suite<ManagerTest> suite;
#include "ManagerTest.moc"
