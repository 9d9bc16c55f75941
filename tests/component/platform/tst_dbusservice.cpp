#include "BusName.h"
#include "FrozenBus.h"
#include "LogCapture.h"
#include "PrivateBus.h"
#include <libtactora/DBusService.h>

#include <memory>
#include <QDBusServiceWatcher>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

using libtactora::DBusService;
using test_support::LogCapture;
using test_support::PrivateBus;

namespace {

QString watchedName()
{
    return QStringLiteral("net.connman");
}

/// What a watcher reports, in order.
class Report : public QObject
{
    Q_OBJECT

public:
    explicit Report(const DBusService &service)
    {
        QObject::connect(&service, &DBusService::connected, this,
                         [this] { lines.append(QStringLiteral("connected")); });
        QObject::connect(&service, &DBusService::disconnected, this,
                         [this] { lines.append(QStringLiteral("disconnected")); });
    }

    QStringList lines;
};

} // namespace

class DBusServiceTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void ownerThatIsThereIsReportedFromTheEventLoop();
    void ownerThatComesLaterIsReported();
    void nameWithoutAnOwnerIsNotReported();
    void ownerThatGoesIsReported();
    void ownerThatCrashesIsReported();
    void ownerThatComesBackIsReportedAgain();
    void ownerThatComesBeforeTheFirstAnswerIsReportedOnce();
    void ownerThatGoesBeforeTheFirstAnswerIsReportedWithItsEnd();
    void ownerThatChangesBeforeTheFirstAnswerIsReportedTwice();
    void changeThatOvertakesTheFirstAnswerStandsForIt_data();
    void changeThatOvertakesTheFirstAnswerStandsForIt();
    void nameThatPassesOnIsReportedOnceMore();
    void everyOneOfManyQuickAppearancesIsReported();
    void otherNamesAreNotReported();
    void severalWatchersOfOneNameAreAllTold();
    void destroyedWatcherIsSilent();
    void busThatDoesNotAnswerHoldsNothingUp();
    void busThatWasNeverThereIsQuietlyBorne();
    void busThatGoesAwayIsQuietlyBorne();

private:
    std::unique_ptr<DBusService> watch();
    void waitUntilAllIsTold();
    void waitUntilWatching();

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<BusName> m_watching;
    std::unique_ptr<BusName> m_connman;
};

void DBusServiceTest::init()
{
    m_bus = std::make_unique<PrivateBus>();
    QVERIFY(m_bus->isRunning());
    m_watching = std::make_unique<BusName>(m_bus->address(), QStringLiteral("watching"));
    m_connman = std::make_unique<BusName>(m_bus->address(), QStringLiteral("connman"));
}

void DBusServiceTest::cleanup()
{
    m_connman.reset();
    m_watching.reset();
    m_bus.reset();
}

std::unique_ptr<DBusService> DBusServiceTest::watch()
{
    return std::make_unique<DBusService>(m_watching->connection(), watchedName());
}

// One more name comes; as the bus keeps the order, all that came before has been told by then.
void DBusServiceTest::waitUntilAllIsTold()
{
    DBusService last(m_watching->connection(), QStringLiteral("test.last"));
    const QSignalSpy lastConnected(&last, &DBusService::connected);
    QVERIFY(m_connman->take(QStringLiteral("test.last")));
    QTRY_COMPARE(lastConnected.size(), 1);
    QVERIFY(m_connman->release(QStringLiteral("test.last")));
}

// An answer from the bus, without the event loop: what was sent before has been handled there.
void DBusServiceTest::waitUntilWatching()
{
    QVERIFY(
        m_watching->connection().interface()->isServiceRegistered(QStringLiteral("org.freedesktop.DBus")));
}

void DBusServiceTest::ownerThatIsThereIsReportedFromTheEventLoop()
{
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const Report report(*service);
    waitUntilWatching();
    QCOMPARE(report.lines, QStringList());
    waitUntilAllIsTold();
    QCOMPARE(report.lines, QStringList{QStringLiteral("connected")});
}

void DBusServiceTest::ownerThatComesLaterIsReported()
{
    const auto service = watch();
    const Report report(*service);
    waitUntilAllIsTold();
    QCOMPARE(report.lines, QStringList());
    QVERIFY(m_connman->take(watchedName()));
    QCOMPARE(report.lines, QStringList());
    waitUntilAllIsTold();
    QCOMPARE(report.lines, QStringList{QStringLiteral("connected")});
}

void DBusServiceTest::nameWithoutAnOwnerIsNotReported()
{
    LogCapture log;
    const auto service = watch();
    const Report report(*service);
    waitUntilAllIsTold();
    QCOMPARE(report.lines, QStringList());
    QVERIFY(log.messages().isEmpty());
}

void DBusServiceTest::ownerThatGoesIsReported()
{
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const Report report(*service);
    waitUntilAllIsTold();
    QVERIFY(m_connman->release(watchedName()));
    waitUntilAllIsTold();
    QCOMPARE(report.lines, (QStringList{QStringLiteral("connected"), QStringLiteral("disconnected")}));
}

void DBusServiceTest::ownerThatCrashesIsReported()
{
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const Report report(*service);
    waitUntilAllIsTold();
    m_connman->leave();
    QTRY_COMPARE(report.lines, (QStringList{QStringLiteral("connected"), QStringLiteral("disconnected")}));
}

void DBusServiceTest::ownerThatComesBackIsReportedAgain()
{
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const Report report(*service);
    waitUntilAllIsTold();
    QVERIFY(m_connman->release(watchedName()));
    QVERIFY(m_connman->take(watchedName()));
    waitUntilAllIsTold();
    QCOMPARE(report.lines, (QStringList{QStringLiteral("connected"), QStringLiteral("disconnected"),
                                        QStringLiteral("connected")}));
}

// Whether the bus meets the name's coming before or after the question is open; many tries meet both.
void DBusServiceTest::ownerThatComesBeforeTheFirstAnswerIsReportedOnce()
{
    for (int attempt = 0; attempt < 50; ++attempt) {
        const auto service = watch();
        const Report report(*service);
        QVERIFY(m_connman->take(watchedName()));
        waitUntilAllIsTold();
        QCOMPARE(report.lines, QStringList{QStringLiteral("connected")});
        QVERIFY(m_connman->release(watchedName()));
    }
}

void DBusServiceTest::ownerThatGoesBeforeTheFirstAnswerIsReportedWithItsEnd()
{
    for (int attempt = 0; attempt < 50; ++attempt) {
        QVERIFY(m_connman->take(watchedName()));
        const auto service = watch();
        const Report report(*service);
        waitUntilWatching();
        QVERIFY(m_connman->release(watchedName()));
        waitUntilAllIsTold();
        QCOMPARE(report.lines, (QStringList{QStringLiteral("connected"), QStringLiteral("disconnected")}));
    }
}

void DBusServiceTest::ownerThatChangesBeforeTheFirstAnswerIsReportedTwice()
{
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const Report report(*service);
    waitUntilWatching();
    BusName successor(m_bus->address(), QStringLiteral("successor"));
    QVERIFY(successor.take(watchedName()));
    waitUntilAllIsTold();
    QCOMPARE(report.lines, (QStringList{QStringLiteral("connected"), QStringLiteral("connected")}));
}

void DBusServiceTest::changeThatOvertakesTheFirstAnswerStandsForIt_data()
{
    QTest::addColumn<QString>("oldOwner");
    QTest::addColumn<QString>("newOwner");
    QTest::addColumn<QStringList>("expected");
    const QString connected = QStringLiteral("connected");
    const QString disconnected = QStringLiteral("disconnected");
    QTest::newRow("came") << QString() << QStringLiteral(":1.5") << QStringList{connected};
    QTest::newRow("went") << QStringLiteral(":1.5") << QString() << QStringList{connected, disconnected};
    QTest::newRow("passed on") << QStringLiteral(":1.5") << QStringLiteral(":1.6")
                               << QStringList{connected, connected};
}

// Too rare to be waited for: the signal is delivered while the answer, "it has an owner", is still on its
// way.
void DBusServiceTest::changeThatOvertakesTheFirstAnswerStandsForIt()
{
    QFETCH(QString, oldOwner);
    QFETCH(QString, newOwner);
    QFETCH(QStringList, expected);
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const Report report(*service);
    auto *signalSource = service->findChild<QDBusServiceWatcher *>();
    QVERIFY(signalSource != nullptr);
    emit signalSource->serviceOwnerChanged(watchedName(), oldOwner, newOwner);
    waitUntilAllIsTold();
    QCOMPARE(report.lines, expected);
}

void DBusServiceTest::nameThatPassesOnIsReportedOnceMore()
{
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const Report report(*service);
    waitUntilAllIsTold();
    BusName successor(m_bus->address(), QStringLiteral("successor"));
    QVERIFY(successor.take(watchedName()));
    waitUntilAllIsTold();
    QCOMPARE(report.lines, (QStringList{QStringLiteral("connected"), QStringLiteral("connected")}));
}

void DBusServiceTest::everyOneOfManyQuickAppearancesIsReported()
{
    constexpr int appearances = 50;
    const auto service = watch();
    const Report report(*service);
    QStringList expected;
    for (int time = 0; time < appearances; ++time) {
        QVERIFY(m_connman->take(watchedName()));
        QVERIFY(m_connman->release(watchedName()));
        expected << QStringLiteral("connected") << QStringLiteral("disconnected");
    }
    waitUntilAllIsTold();
    QCOMPARE(report.lines, expected);
}

void DBusServiceTest::otherNamesAreNotReported()
{
    const auto service = watch();
    const Report report(*service);
    QVERIFY(m_connman->take(QStringLiteral("net.connman.vpn")));
    QVERIFY(m_connman->take(QStringLiteral("net.connmanx")));
    waitUntilAllIsTold();
    QCOMPARE(report.lines, QStringList());
}

void DBusServiceTest::severalWatchersOfOneNameAreAllTold()
{
    const auto first = watch();
    const auto second = watch();
    const Report firstReport(*first);
    const Report secondReport(*second);
    QVERIFY(m_connman->take(watchedName()));
    waitUntilAllIsTold();
    QCOMPARE(firstReport.lines, QStringList{QStringLiteral("connected")});
    QCOMPARE(secondReport.lines, QStringList{QStringLiteral("connected")});
}

void DBusServiceTest::destroyedWatcherIsSilent()
{
    QVERIFY(m_connman->take(watchedName()));
    auto service = watch();
    const Report report(*service);
    waitUntilWatching();
    service.reset();
    QVERIFY(m_connman->release(watchedName()));
    waitUntilAllIsTold();
    QCOMPARE(report.lines, QStringList());
}

void DBusServiceTest::busThatDoesNotAnswerHoldsNothingUp()
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
    const Report report(*service);
    QTRY_COMPARE(report.lines, QStringList{QStringLiteral("connected")});
}

void DBusServiceTest::busThatWasNeverThereIsQuietlyBorne()
{
    const LogCapture log;
    const QDBusConnection nowhere(QStringLiteral("nowhere"));
    QVERIFY(!nowhere.isConnected());
    const DBusService service(nowhere, watchedName());
    const Report report(service);
    QCoreApplication::processEvents();
    QCOMPARE(report.lines, QStringList());
    QVERIFY(log.messages().isEmpty());
}

void DBusServiceTest::busThatGoesAwayIsQuietlyBorne()
{
    const LogCapture log;
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const Report report(*service);
    waitUntilAllIsTold();
    m_bus->stop();
    QTRY_VERIFY(!m_watching->connection().isConnected());
    QCoreApplication::processEvents();
    QCOMPARE(report.lines, QStringList{QStringLiteral("connected")});
    QVERIFY(log.messages().isEmpty());
}

QTEST_GUILESS_MAIN(DBusServiceTest)
#include "tst_dbusservice.moc"
