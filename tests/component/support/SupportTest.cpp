#include "LogCapture.h"
#include "PrivateBus.h"
#include "Suite.h"

#include <csignal>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QLoggingCategory>
#include <QTest>

using namespace test_support;

namespace {
Q_LOGGING_CATEGORY(lcSample, "sample")

class Listener : public QObject
{
    Q_OBJECT
public:
    bool subscribe(QDBusConnection &connection, const QString &path)
    {
        return connection.connect({}, path, QStringLiteral("a.b"), QStringLiteral("C"), this, SLOT(count()));
    }
    int told = 0;

public slots:
    void count() { ++told; }
};

QString numberedPath(int number)
{
    return QStringLiteral("/object/%1").arg(number);
}

void roundTrip(const QDBusConnection &connection)
{
    connection.interface()->isServiceRegistered(QStringLiteral("test.name"));
}
} // namespace

class SupportTest : public QObject
{
    Q_OBJECT

private slots:
    void systemBusIsThePrivateBus();
    void addressesAreRestoredWhenTheBusEnds();
    void twoBusesAreStrangersToEachOther();
    void stoppingTheBusDropsItsConnections();
    void matchRuleLimitIsTheOneAskedFor();

    void logCaptureSeparatesCategoriesAndTypes();
    void takeCriticalsLeavesTheOthers();
};

void SupportTest::systemBusIsThePrivateBus()
{
    const PrivateBus bus;
    QVERIFY(bus.isRunning());
    QDBusConnection explicitly = QDBusConnection::connectToBus(bus.address(), QStringLiteral("explicit"));
    QVERIFY(explicitly.registerService(QStringLiteral("test.name")));
    QVERIFY(QDBusConnection::systemBus().interface()->isServiceRegistered(QStringLiteral("test.name")));
    QDBusConnection::disconnectFromBus(QStringLiteral("explicit"));
}

void SupportTest::addressesAreRestoredWhenTheBusEnds()
{
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    {
        const PrivateBus bus;
        QCOMPARE(qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS"), bus.address());
        QCOMPARE(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    }
    QCOMPARE(qgetenv("DBUS_SYSTEM_BUS_ADDRESS"), QByteArray("unix:path=/nowhere"));
    QVERIFY(!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"));
}

void SupportTest::twoBusesAreStrangersToEachOther()
{
    const PrivateBus first;
    const PrivateBus second;
    QDBusConnection onFirst = QDBusConnection::connectToBus(first.address(), QStringLiteral("first"));
    QDBusConnection onSecond = QDBusConnection::connectToBus(second.address(), QStringLiteral("second"));
    QVERIFY(onFirst.registerService(QStringLiteral("test.name")));
    QVERIFY(onSecond.isConnected());
    QVERIFY(!onSecond.interface()->isServiceRegistered(QStringLiteral("test.name")));
    QDBusConnection::disconnectFromBus(QStringLiteral("first"));
    QDBusConnection::disconnectFromBus(QStringLiteral("second"));
}

void SupportTest::stoppingTheBusDropsItsConnections()
{
    PrivateBus bus;
    const QDBusConnection connection =
        QDBusConnection::connectToBus(bus.address(), QStringLiteral("dropped"));
    QVERIFY(connection.isConnected());
    bus.stop();
    QVERIFY(!bus.isRunning());
    QTRY_VERIFY(!connection.isConnected());
    QDBusConnection::disconnectFromBus(QStringLiteral("dropped"));
}

// QtDBus does not look at the answer to AddMatch: past the limit, signals are simply lost.
void SupportTest::matchRuleLimitIsTheOneAskedFor()
{
    BusLimits limits;
    limits.maxMatchRulesPerConnection = 5;
    const PrivateBus bus(limits);
    QDBusConnection receiver = QDBusConnection::connectToBus(bus.address(), QStringLiteral("receiver"));
    QDBusConnection sender = QDBusConnection::connectToBus(bus.address(), QStringLiteral("sender"));
    Listener listener;
    for (int number = 0; number < 10; ++number) {
        QVERIFY(listener.subscribe(receiver, numberedPath(number)));
    }
    roundTrip(receiver);
    for (int number = 0; number < 10; ++number) {
        sender.send(
            QDBusMessage::createSignal(numberedPath(number), QStringLiteral("a.b"), QStringLiteral("C")));
    }
    roundTrip(sender);
    roundTrip(receiver);
    QTRY_COMPARE(listener.told, 5);
    QDBusConnection::disconnectFromBus(QStringLiteral("receiver"));
    QDBusConnection::disconnectFromBus(QStringLiteral("sender"));
}

void SupportTest::logCaptureSeparatesCategoriesAndTypes()
{
    const LogCapture log;
    qCCritical(lcSample) << "Missing" << QStringLiteral("Strength");
    qCWarning(lcSample) << "careful";
    qWarning() << "elsewhere";
    QCOMPARE(log.lines(QStringLiteral("sample")),
             (QStringList{QStringLiteral("Missing \"Strength\""), QStringLiteral("careful")}));
    QCOMPARE(log.lines(QStringLiteral("sample"), QtWarningMsg), QStringList{QStringLiteral("careful")});
    QCOMPARE(log.lines(QStringLiteral("default")), QStringList{QStringLiteral("elsewhere")});
    QVERIFY(log.contains(QStringLiteral("Strength")));
    QVERIFY(!log.contains(QtWarningMsg, QStringLiteral("default"), QStringLiteral("careful")));
}

void SupportTest::takeCriticalsLeavesTheOthers()
{
    LogCapture log;
    qCritical() << "one";
    qWarning() << "two";
    qCritical() << "three";
    QCOMPARE(log.takeCriticals(), (QStringList{QStringLiteral("one"), QStringLiteral("three")}));
    QCOMPARE(log.takeCriticals(), QStringList{});
    QCOMPARE(log.lines(QStringLiteral("default")), QStringList{QStringLiteral("two")});
}

static const Suite<SupportTest> suite;
#include "SupportTest.moc"
