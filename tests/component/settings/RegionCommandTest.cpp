#include "Command.h"
#include "EventWait.h"
#include "NetworkSettings.h"
#include "RegionFixture.h"
#include "Suite.h"
#include "Text.h"

#include <QElapsedTimer>
#include <QTimer>

using test_support::eventTimeoutMs;

namespace {

// What the start-up allows its command.
constexpr int startUpTimeoutMs = 5000;

} // namespace

/// How the region's command of a start comes to its end, and what begins before it has.
class RegionCommandTest : public RegionFixture
{
    Q_OBJECT

private slots:
    void missingCommandEndsTheStartOnceAfterFiveSeconds();
    void hangingCommandIsKilledAfterFiveSecondsAndOnlyLogsItsEnd();
    void finishedCommandStopsTheTimer();
    void timeoutWithoutACommandEndsTheStart();
    void eachStartEndsOnce();
    void startFromWithinTheEndOfAnotherHasItsOwnTimer();

    void settingTheRegionWaitsForTheCommandStillRunning();
    void settingTheRegionWaitsForNoMoreThanTheRunningCommandsTime();
    void settingTheRegionWhenTheStartIsGivenUpWaitsForTheKilledCommand();
    void startingAgainWhileTheCommandRunsWaitsForIt();
    void endOfTheObjectEndsTheCommand();
};

void RegionCommandTest::missingCommandEndsTheStartOnceAfterFiveSeconds()
{
    storeRegion("SE");
    commands().removeProgram("iw"_s);
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    int early = -1;
    int late = -1;
    settings.applyStoredWifiRegion();
    // The timers of a thread end in the order of their times, however busy the machine is.
    QTimer::singleShot(startUpTimeoutMs * 9 / 10, Qt::PreciseTimer, &initDone,
                       [&] { early = initDone.count(); });
    QTimer::singleShot(startUpTimeoutMs * 11 / 10, Qt::PreciseTimer, &initDone,
                       [&] { late = initDone.count(); });

    QTRY_VERIFY_WITH_TIMEOUT(late >= 0, eventTimeoutMs);
    QCOMPARE(early, 0);
    QCOMPARE(late, 1);
    QVERIFY(!initDone.wait(startUpTimeoutMs));
    QCOMPARE(debugLines(), QStringList());
    QCOMPARE(complaints(), QStringList());
}

void RegionCommandTest::hangingCommandIsKilledAfterFiveSecondsAndOnlyLogsItsEnd()
{
    storeRegion("SE");
    commands().script("iw"_s, {"deaf"_s, "hang"_s});
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    QElapsedTimer elapsed;
    elapsed.start();
    settings.applyStoredWifiRegion();

    QVERIFY(initDone.wait(eventTimeoutMs));
    QVERIFY2(elapsed.elapsed() >= startUpTimeoutMs * 95 / 100,
             qPrintable(QString::number(elapsed.elapsed())));
    QTRY_COMPARE_WITH_TIMEOUT(debugLines(), QStringList(failureLine), eventTimeoutMs);
    QCOMPARE(initDone.count(), 1);
    QCOMPARE(commands().calls(), QStringList(setSe));
}

void RegionCommandTest::finishedCommandStopsTheTimer()
{
    storeRegion("SE");
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();
    QVERIFY(initDone.wait(eventTimeoutMs));

    // Longer than the timer: what must not come cannot be waited for otherwise.
    QVERIFY(!initDone.wait(startUpTimeoutMs + 1000));
}

void RegionCommandTest::timeoutWithoutACommandEndsTheStart()
{
    NetworkSettings settings;
    const QSignalSpy initDone(&settings, &NetworkSettings::initDone);

    settings.timeout();
    QCOMPARE(initDone.count(), 1);
    QVERIFY(log().messages().isEmpty());
}

void RegionCommandTest::eachStartEndsOnce()
{
    storeRegion("SE");
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    for (int start = 1; start <= 3; ++start) {
        settings.applyStoredWifiRegion();
        QVERIFY(initDone.wait(eventTimeoutMs));
        QCOMPARE(initDone.count(), start);
    }
    QCOMPARE(commands().calls(), QStringList({setSe, setSe, setSe}));
}

void RegionCommandTest::startFromWithinTheEndOfAnotherHasItsOwnTimer()
{
    storeRegion("SE");
    NetworkSettings settings;
    int ends = 0;
    connect(&settings, &NetworkSettings::initDone, this, [&] {
        if (++ends == 1) {
            commands().removeProgram("iw"_s);
            settings.applyStoredWifiRegion();
        }
    });
    settings.applyStoredWifiRegion();

    QTRY_COMPARE_WITH_TIMEOUT(ends, 2, eventTimeoutMs);
    QCOMPARE(commands().calls(), QStringList(setSe));
}

void RegionCommandTest::settingTheRegionWaitsForTheCommandStillRunning()
{
    storeRegion("SE");
    commands().script(setSe, {"hold"_s, "print done"_s});
    NetworkSettings settings;
    const QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();
    QVERIFY(commands().waitForCall(setSe));

    std::thread release = releaseLater();
    const bool applied = settings.setWifiRegion("DE"_s);
    release.join();
    QVERIFY(applied);
    QCOMPARE(commands().calls(), QStringList({setSe, setDe}));
    QCOMPARE(debugLines(), QStringList({successLine, successLine}));
    QCOMPARE(initDone.count(), 2);
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\n"));
}

void RegionCommandTest::settingTheRegionWaitsForNoMoreThanTheRunningCommandsTime()
{
    constexpr auto busyTime = std::chrono::seconds(20);
    storeRegion("SE");
    commands().script(setSe, {"hang"_s});
    NetworkSettings settings;
    QElapsedTimer sinceStart;
    sinceStart.start();
    settings.applyStoredWifiRegion();
    QVERIFY(commands().waitForCall(setSe));
    // Something else keeps the daemon busy, so that the start is not given up yet.
    std::this_thread::sleep_for(busyTime);

    QVERIFY(settings.setWifiRegion("DE"_s));
    const std::chrono::milliseconds waited(sinceStart.elapsed());
    QVERIFY2(waited >= Command::Timeout, qPrintable(QString::number(waited.count())));
    QVERIFY2(waited < Command::Timeout + busyTime / 2, qPrintable(QString::number(waited.count())));
    QCOMPARE(commands().calls(), QStringList({setSe, setDe}));
    QCOMPARE(debugLines(), QStringList({failureLine, successLine}));
}

void RegionCommandTest::settingTheRegionWhenTheStartIsGivenUpWaitsForTheKilledCommand()
{
    storeRegion("SE");
    commands().script(setSe, {"hang"_s});
    NetworkSettings settings;
    int ends = 0;
    bool applied = false;
    QElapsedTimer waiting;
    qint64 waitedMs = 0;
    connect(&settings, &NetworkSettings::initDone, this, [&] {
        if (++ends == 1) {
            waiting.start();
            applied = settings.setWifiRegion("DE"_s);
            waitedMs = waiting.elapsed();
        }
    });
    settings.applyStoredWifiRegion();

    QTRY_VERIFY_WITH_TIMEOUT(applied, eventTimeoutMs);
    QCOMPARE(commands().calls(), QStringList({setSe, setDe}));
    QCOMPARE(debugLines(), QStringList({failureLine, successLine}));
    QCOMPARE(ends, 2);
    // It had been killed before the end was told: nothing has to run into the time-out for that.
    QVERIFY2(waitedMs < Command::Timeout.count() / 2, qPrintable(QString::number(waitedMs)));
}

void RegionCommandTest::startingAgainWhileTheCommandRunsWaitsForIt()
{
    storeRegion("SE");
    commands().script("iw"_s, {"once"_s, "hold"_s});
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();
    QVERIFY(commands().waitForCall(setSe));

    std::thread release = releaseLater();
    settings.applyStoredWifiRegion();
    release.join();
    QTRY_COMPARE_WITH_TIMEOUT(initDone.count(), 2, eventTimeoutMs);
    QCOMPARE(commands().calls(), QStringList({setSe, setSe}));
}

void RegionCommandTest::endOfTheObjectEndsTheCommand()
{
    storeRegion("SE");
    commands().script("iw"_s, {"hang"_s});
    auto settings = std::make_unique<NetworkSettings>();
    const QSignalSpy initDone(settings.get(), &NetworkSettings::initDone);
    settings->applyStoredWifiRegion();
    QVERIFY(commands().waitForCall(setSe));

    settings.reset();
    QCOMPARE(initDone.count(), 0);
    QVERIFY(log().messages().isEmpty());
}

static const Suite<RegionCommandTest> regionCommandTest;
#include "RegionCommandTest.moc"
