#include "DBusServiceFixture.h"
#include "FrozenBus.h"
#include "LogCapture.h"
#include "Suite.h"
#include "Text.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

using libtactora::DBusService;
using test_support::LogCapture;

/// Other names, other watchers, and a bus in trouble.
class DBusServiceSurroundingsTest : public DBusServiceFixture
{
    Q_OBJECT

private slots:
    void otherNamesAreNotReported();
    void severalWatchersOfOneNameAreAllTold();
    void destroyedWatcherIsSilent();
    void busThatDoesNotAnswerHoldsNothingUp();
    void busThatWasNeverThereIsQuietlyBorne();
    void busThatGoesAwayIsQuietlyBorne();
};

void DBusServiceSurroundingsTest::otherNamesAreNotReported()
{
    const auto service = watch();
    const DBusServiceReport report(*service);
    QVERIFY(m_connman->take("net.connman.vpn"_s));
    QVERIFY(m_connman->take("net.connmanx"_s));
    waitUntilAllIsTold();
    QCOMPARE(report.lines, QStringList());
}

void DBusServiceSurroundingsTest::severalWatchersOfOneNameAreAllTold()
{
    const auto first = watch();
    const auto second = watch();
    const DBusServiceReport firstReport(*first);
    const DBusServiceReport secondReport(*second);
    QVERIFY(m_connman->take(watchedName()));
    waitUntilAllIsTold();
    QCOMPARE(firstReport.lines, QStringList{"connected"_s});
    QCOMPARE(secondReport.lines, QStringList{"connected"_s});
}

void DBusServiceSurroundingsTest::destroyedWatcherIsSilent()
{
    QVERIFY(m_connman->take(watchedName()));
    auto service = watch();
    const DBusServiceReport report(*service);
    waitUntilWatching();
    service.reset();
    QVERIFY(m_connman->release(watchedName()));
    waitUntilAllIsTold();
    QCOMPARE(report.lines, QStringList());
}

void DBusServiceSurroundingsTest::busThatDoesNotAnswerHoldsNothingUp()
{
    QVERIFY(m_connman->take(watchedName()));
    std::unique_ptr<DBusService> service;
    {
        const FrozenBus frozen(m_watching->connection());
        QElapsedTimer clock;
        clock.start();
        service = watch();
        QVERIFY(clock.elapsed() < FrozenBus::sureSignOfWaitingMs);
    }
    const DBusServiceReport report(*service);
    QTRY_COMPARE(report.lines, QStringList{"connected"_s});
}

void DBusServiceSurroundingsTest::busThatWasNeverThereIsQuietlyBorne()
{
    const LogCapture log;
    const QDBusConnection nowhere("nowhere"_s);
    QVERIFY(!nowhere.isConnected());
    const DBusService service(nowhere, watchedName());
    const DBusServiceReport report(service);
    QCoreApplication::processEvents();
    QCOMPARE(report.lines, QStringList());
    QVERIFY(log.messages().isEmpty());
}

void DBusServiceSurroundingsTest::busThatGoesAwayIsQuietlyBorne()
{
    const LogCapture log;
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const DBusServiceReport report(*service);
    waitUntilAllIsTold();
    m_bus->stop();
    QTRY_VERIFY(!m_watching->connection().isConnected());
    QCoreApplication::processEvents();
    QCOMPARE(report.lines, QStringList{"connected"_s});
    QVERIFY(log.messages().isEmpty());
}

static const Suite<DBusServiceSurroundingsTest> dBusServiceSurroundingsTest;
#include "DBusServiceSurroundingsTest.moc"
