#include "DBusServiceFixture.h"
#include "LogCapture.h"
#include "Suite.h"
#include "Text.h"

#include <QDBusServiceWatcher>
#include <QTest>

using test_support::LogCapture;

/// How owners of the name come and go.
class DBusServiceTest : public DBusServiceFixture
{
    Q_OBJECT

private slots:
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
};

void DBusServiceTest::ownerThatIsThereIsReportedFromTheEventLoop()
{
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const DBusServiceReport report(*service);
    waitUntilWatching();
    QCOMPARE(report.lines, QStringList());
    waitUntilAllIsTold();
    QCOMPARE(report.lines, QStringList{"connected"_s});
}

void DBusServiceTest::ownerThatComesLaterIsReported()
{
    const auto service = watch();
    const DBusServiceReport report(*service);
    waitUntilAllIsTold();
    QCOMPARE(report.lines, QStringList());
    QVERIFY(m_connman->take(watchedName()));
    QCOMPARE(report.lines, QStringList());
    waitUntilAllIsTold();
    QCOMPARE(report.lines, QStringList{"connected"_s});
}

void DBusServiceTest::nameWithoutAnOwnerIsNotReported()
{
    LogCapture log;
    const auto service = watch();
    const DBusServiceReport report(*service);
    waitUntilAllIsTold();
    QCOMPARE(report.lines, QStringList());
    QVERIFY(log.messages().isEmpty());
}

void DBusServiceTest::ownerThatGoesIsReported()
{
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const DBusServiceReport report(*service);
    waitUntilAllIsTold();
    QVERIFY(m_connman->release(watchedName()));
    waitUntilAllIsTold();
    QCOMPARE(report.lines, (QStringList{"connected"_s, "disconnected"_s}));
}

void DBusServiceTest::ownerThatCrashesIsReported()
{
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const DBusServiceReport report(*service);
    waitUntilAllIsTold();
    m_connman->leave();
    QTRY_COMPARE(report.lines, (QStringList{"connected"_s, "disconnected"_s}));
}

void DBusServiceTest::ownerThatComesBackIsReportedAgain()
{
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const DBusServiceReport report(*service);
    waitUntilAllIsTold();
    QVERIFY(m_connman->release(watchedName()));
    QVERIFY(m_connman->take(watchedName()));
    waitUntilAllIsTold();
    QCOMPARE(report.lines, (QStringList{"connected"_s, "disconnected"_s, "connected"_s}));
}

// Whether the bus meets the name's coming before or after the question is open; many tries meet both.
void DBusServiceTest::ownerThatComesBeforeTheFirstAnswerIsReportedOnce()
{
    for (int attempt = 0; attempt < 50; ++attempt) {
        const auto service = watch();
        const DBusServiceReport report(*service);
        QVERIFY(m_connman->take(watchedName()));
        waitUntilAllIsTold();
        QCOMPARE(report.lines, QStringList{"connected"_s});
        QVERIFY(m_connman->release(watchedName()));
    }
}

void DBusServiceTest::ownerThatGoesBeforeTheFirstAnswerIsReportedWithItsEnd()
{
    for (int attempt = 0; attempt < 50; ++attempt) {
        QVERIFY(m_connman->take(watchedName()));
        const auto service = watch();
        const DBusServiceReport report(*service);
        waitUntilWatching();
        QVERIFY(m_connman->release(watchedName()));
        waitUntilAllIsTold();
        QCOMPARE(report.lines, (QStringList{"connected"_s, "disconnected"_s}));
    }
}

void DBusServiceTest::ownerThatChangesBeforeTheFirstAnswerIsReportedTwice()
{
    QVERIFY(m_connman->take(watchedName()));
    const auto service = watch();
    const DBusServiceReport report(*service);
    waitUntilWatching();
    BusName successor(m_bus->address(), "successor"_s);
    QVERIFY(successor.take(watchedName()));
    waitUntilAllIsTold();
    QCOMPARE(report.lines, (QStringList{"connected"_s, "connected"_s}));
}

void DBusServiceTest::changeThatOvertakesTheFirstAnswerStandsForIt_data()
{
    QTest::addColumn<QString>("oldOwner");
    QTest::addColumn<QString>("newOwner");
    QTest::addColumn<QStringList>("expected");
    const QString connected = "connected"_s;
    const QString disconnected = "disconnected"_s;
    QTest::newRow("came") << QString() << ":1.5"_s << QStringList{connected};
    QTest::newRow("went") << ":1.5"_s << QString() << QStringList{connected, disconnected};
    QTest::newRow("passed on") << ":1.5"_s
                               << ":1.6"_s << QStringList{connected, connected};
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
    const DBusServiceReport report(*service);
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
    const DBusServiceReport report(*service);
    waitUntilAllIsTold();
    BusName successor(m_bus->address(), "successor"_s);
    QVERIFY(successor.take(watchedName()));
    waitUntilAllIsTold();
    QCOMPARE(report.lines, (QStringList{"connected"_s, "connected"_s}));
}

void DBusServiceTest::everyOneOfManyQuickAppearancesIsReported()
{
    constexpr int appearances = 50;
    const auto service = watch();
    const DBusServiceReport report(*service);
    QStringList expected;
    for (int time = 0; time < appearances; ++time) {
        QVERIFY(m_connman->take(watchedName()));
        QVERIFY(m_connman->release(watchedName()));
        expected << "connected"_s
                 << "disconnected"_s;
    }
    waitUntilAllIsTold();
    QCOMPARE(report.lines, expected);
}

static const Suite<DBusServiceTest> dBusServiceTest;
#include "DBusServiceTest.moc"
