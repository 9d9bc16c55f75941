#include "LogCapture.h"
#include "PrivateBus.h"
#include "Suite.h"
#include "Text.h"

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
        return connection.connect({}, path, "a.b"_s, "C"_s, this, SLOT(count()));
    }
    int told = 0;

public slots:
    void count() { ++told; }
};

QString numberedPath(int number)
{
    return "/object/%1"_s.arg(number);
}

void roundTrip(const QDBusConnection &connection)
{
    connection.interface()->isServiceRegistered("test.name"_s);
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
    QDBusConnection explicitly = QDBusConnection::connectToBus(bus.address(), "explicit"_s);
    QVERIFY(explicitly.registerService("test.name"_s));
    QVERIFY(QDBusConnection::systemBus().interface()->isServiceRegistered("test.name"_s));
    QDBusConnection::disconnectFromBus("explicit"_s);
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
    QDBusConnection onFirst = QDBusConnection::connectToBus(first.address(), "first"_s);
    QDBusConnection onSecond = QDBusConnection::connectToBus(second.address(), "second"_s);
    QVERIFY(onFirst.registerService("test.name"_s));
    QVERIFY(onSecond.isConnected());
    QVERIFY(!onSecond.interface()->isServiceRegistered("test.name"_s));
    QDBusConnection::disconnectFromBus("first"_s);
    QDBusConnection::disconnectFromBus("second"_s);
}

void SupportTest::stoppingTheBusDropsItsConnections()
{
    PrivateBus bus;
    const QDBusConnection connection = QDBusConnection::connectToBus(bus.address(), "dropped"_s);
    QVERIFY(connection.isConnected());
    bus.stop();
    QVERIFY(!bus.isRunning());
    QTRY_VERIFY(!connection.isConnected());
    QDBusConnection::disconnectFromBus("dropped"_s);
}

// QtDBus does not look at the answer to AddMatch: past the limit, signals are simply lost.
void SupportTest::matchRuleLimitIsTheOneAskedFor()
{
    BusLimits limits;
    limits.maxMatchRulesPerConnection = 5;
    const PrivateBus bus(limits);
    QDBusConnection receiver = QDBusConnection::connectToBus(bus.address(), "receiver"_s);
    QDBusConnection sender = QDBusConnection::connectToBus(bus.address(), "sender"_s);
    Listener listener;
    for (int number = 0; number < 10; ++number) {
        QVERIFY(listener.subscribe(receiver, numberedPath(number)));
    }
    roundTrip(receiver);
    for (int number = 0; number < 10; ++number) {
        sender.send(QDBusMessage::createSignal(numberedPath(number), "a.b"_s, "C"_s));
    }
    roundTrip(sender);
    roundTrip(receiver);
    QTRY_COMPARE(listener.told, 5);
    QDBusConnection::disconnectFromBus("receiver"_s);
    QDBusConnection::disconnectFromBus("sender"_s);
}

void SupportTest::logCaptureSeparatesCategoriesAndTypes()
{
    const LogCapture log;
    qCCritical(lcSample) << "Missing"
                         << "Strength"_s;
    qCWarning(lcSample) << "careful";
    qWarning() << "elsewhere";
    QCOMPARE(log.lines("sample"_s), (QStringList{"Missing \"Strength\""_s, "careful"_s}));
    QCOMPARE(log.lines("sample"_s, QtWarningMsg), QStringList{"careful"_s});
    QCOMPARE(log.lines("default"_s), QStringList{"elsewhere"_s});
    QVERIFY(log.contains("Strength"_s));
    QVERIFY(!log.contains(QtWarningMsg, "default"_s, "careful"_s));
}

void SupportTest::takeCriticalsLeavesTheOthers()
{
    LogCapture log;
    qCritical() << "one";
    qWarning() << "two";
    qCritical() << "three";
    QCOMPARE(log.takeCriticals(), (QStringList{"one"_s, "three"_s}));
    QCOMPARE(log.takeCriticals(), QStringList{});
    QCOMPARE(log.lines("default"_s), QStringList{"two"_s});
}

static const Suite<SupportTest> supportTest;
#include "SupportTest.moc"
