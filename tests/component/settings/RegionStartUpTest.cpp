#include "Command.h"
#include "EventWait.h"
#include "NetworkSettings.h"
#include "PrivateWorld.h"
#include "SettingsFixture.h"

#include <chrono>
#include <QElapsedTimer>
#include <QTimer>
#include <thread>

using test_support::eventTimeoutMs;

namespace {

const QString regionStore = QStringLiteral("region");
const QString setUs = QStringLiteral("iw reg set US");
const QString setSe = QStringLiteral("iw reg set SE");
const QString setDe = QStringLiteral("iw reg set DE");
const QString successLine = QStringLiteral("The region has been set successfully.");
const QString failureLine = QStringLiteral("Failed to set the region.");

// What the start-up allows its command.
constexpr int startUpTimeoutMs = 5000;

} // namespace

/// The region's way through the daemon's start, where nobody waits for its command.
class RegionStartUpTest : public SettingsFixture
{
    Q_OBJECT

private slots:
    // First, while this process has applied no region yet.
    void lockedFirstStartAppliesTheWorldRegion();

    void firstStartSetsAndStoresUsAndAppliesItAgain();
    void storedRegionIsAppliedAsItIs();
    void storedWorldRegionIsReplacedByUs();
    void onlyTheExactWorldRegionIsReplaced();
    void lockedFirstStartAppliesTheRegionInForce();
    void lockedWorldRegionStays();
    void firstStartWhereTheRegionCannotBeStoredAppliesTheRegionInForce();
    void regionSetLaterIsTheRegionInForce();

    void startDoesNotWaitForTheCommand();
    void exitCodeOfTheCommandIsNotLookedAt();
    void crashedCommandEndsTheStart();
    void missingCommandEndsTheStartOnceAfterFiveSeconds();
    void hangingCommandIsKilledAfterFiveSecondsAndOnlyLogsItsEnd();
    void finishedCommandStopsTheTimer();
    void timeoutWithoutACommandEndsTheStart();
    void eachStartEndsOnce();
    void startFromWithinTheEndOfAnotherHasItsOwnTimer();

    void settingTheRegionWaitsForTheCommandStillRunning();
    void settingTheRegionWhenTheStartIsGivenUpWaitsForTheKilledCommand();
    void startingAgainWhileTheCommandRunsWaitsForIt();
    void endOfTheObjectEndsTheCommand();

private:
    void storeRegion(const QByteArray &region);
    /// Releases the commands on hold while this thread is blocked.
    std::thread releaseLater();
};

void RegionStartUpTest::storeRegion(const QByteArray &region)
{
    setStore(regionStore, "[wifi]\nregion=" + region + '\n');
}

std::thread RegionStartUpTest::releaseLater()
{
    // Nothing can tell from outside that the main thread has begun to wait; releasing earlier would be
    // harmless, only less telling.
    return std::thread([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        commands().release();
    });
}

void RegionStartUpTest::lockedFirstStartAppliesTheWorldRegion()
{
    setStore(regionStore, "[wifi]\nregionLocked=true\n");
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();

    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(commands().calls(), QStringList(QStringLiteral("iw reg set 00")));
    QCOMPARE(criticalLines(),
             QStringList(networkSettingsLine(QStringLiteral("Lock active. Unable to set region to \"US\""))));
}

void RegionStartUpTest::firstStartSetsAndStoresUsAndAppliesItAgain()
{
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();

    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=US\n"));
    QCOMPARE(initDone.count(), 1);
    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(initDone.count(), 2);
    QCOMPARE(commands().calls(), QStringList({setUs, setUs}));
    QCOMPARE(debugLines(), QStringList({successLine, successLine}));
    QCOMPARE(criticalLines(), QStringList());
}

void RegionStartUpTest::storedRegionIsAppliedAsItIs()
{
    storeRegion("SE");
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();

    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(commands().calls(), QStringList(setSe));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\n"));
    QCOMPARE(debugLines(), QStringList(successLine));
    QCOMPARE(criticalLines(), QStringList());
}

void RegionStartUpTest::storedWorldRegionIsReplacedByUs()
{
    storeRegion("00");
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();

    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(commands().calls(), QStringList({setUs, setUs}));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=US\n"));
}

void RegionStartUpTest::onlyTheExactWorldRegionIsReplaced()
{
    storeRegion("000");
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();

    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(commands().calls(), QStringList(QStringLiteral("iw reg set 000")));
}

void RegionStartUpTest::lockedFirstStartAppliesTheRegionInForce()
{
    NetworkSettings settings;
    QVERIFY(settings.setWifiRegion(QStringLiteral("DE")));
    setStore(regionStore, "[wifi]\nregionLocked=true\n");
    commands().clearCalls();

    NetworkSettings lockedSettings;
    QSignalSpy initDone(&lockedSettings, &NetworkSettings::initDone);
    lockedSettings.applyStoredWifiRegion();
    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(commands().calls(), QStringList(setDe));
}

void RegionStartUpTest::lockedWorldRegionStays()
{
    setStore(regionStore, "[wifi]\nregion=00\nregionLocked=true\n");
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();

    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(commands().calls(), QStringList(QStringLiteral("iw reg set 00")));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=00\nregionLocked=true\n"));
    QCOMPARE(criticalLines(),
             QStringList(networkSettingsLine(QStringLiteral("Lock active. Unable to set region to \"US\""))));
}

void RegionStartUpTest::firstStartWhereTheRegionCannotBeStoredAppliesTheRegionInForce()
{
    NetworkSettings settings;
    QVERIFY(settings.setWifiRegion(QStringLiteral("DE")));
    setStore(regionStore, "");
    commands().clearCalls();
    commands().script(setUs, {QStringLiteral("crash")});

    NetworkSettings emptySettings;
    QSignalSpy initDone(&emptySettings, &NetworkSettings::initDone);
    emptySettings.applyStoredWifiRegion();
    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(commands().calls(), QStringList({setUs, setDe}));
    QCOMPARE(criticalLines(), QStringList(plainLine(QStringLiteral("Failed to set region."))));
    QCOMPARE(store(regionStore), QByteArray(""));
}

void RegionStartUpTest::regionSetLaterIsTheRegionInForce()
{
    storeRegion("SE");
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();
    QVERIFY(initDone.wait(eventTimeoutMs));
    QVERIFY(settings.setWifiRegion(QStringLiteral("DE")));
    commands().clearCalls();

    settings.applyStoredWifiRegion();
    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(commands().calls(), QStringList(setDe));
}

void RegionStartUpTest::startDoesNotWaitForTheCommand()
{
    storeRegion("SE");
    commands().script(QStringLiteral("iw"), {QStringLiteral("hold")});
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();

    QVERIFY(commands().waitForCall(setSe));
    QCOMPARE(initDone.count(), 0);
    commands().release();
    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(initDone.count(), 1);
}

void RegionStartUpTest::exitCodeOfTheCommandIsNotLookedAt()
{
    storeRegion("SE");
    commands().script(QStringLiteral("iw"), {QStringLiteral("exit 237")});
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();

    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(debugLines(), QStringList(successLine));
    QCOMPARE(criticalLines(), QStringList());
}

void RegionStartUpTest::crashedCommandEndsTheStart()
{
    storeRegion("SE");
    commands().script(QStringLiteral("iw"), {QStringLiteral("crash")});
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();

    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(initDone.count(), 1);
    QCOMPARE(debugLines(), QStringList(failureLine));
    QCOMPARE(criticalLines(), QStringList());
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\n"));
}

void RegionStartUpTest::missingCommandEndsTheStartOnceAfterFiveSeconds()
{
    storeRegion("SE");
    commands().removeProgram(QStringLiteral("iw"));
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    int early = -1;
    int late = -1;
    settings.applyStoredWifiRegion();
    // The timers of a thread end in the order of their times, however busy the machine is.
    QTimer::singleShot(startUpTimeoutMs * 9 / 10, Qt::PreciseTimer, this, [&] { early = initDone.count(); });
    QTimer::singleShot(startUpTimeoutMs * 11 / 10, Qt::PreciseTimer, this, [&] { late = initDone.count(); });

    QTRY_VERIFY_WITH_TIMEOUT(late >= 0, eventTimeoutMs);
    QCOMPARE(early, 0);
    QCOMPARE(late, 1);
    QVERIFY(!initDone.wait(startUpTimeoutMs));
    QCOMPARE(debugLines(), QStringList());
    QCOMPARE(criticalLines(), QStringList());
}

void RegionStartUpTest::hangingCommandIsKilledAfterFiveSecondsAndOnlyLogsItsEnd()
{
    storeRegion("SE");
    commands().script(QStringLiteral("iw"), {QStringLiteral("hang")});
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

void RegionStartUpTest::finishedCommandStopsTheTimer()
{
    storeRegion("SE");
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();
    QVERIFY(initDone.wait(eventTimeoutMs));

    // Longer than the timer: what must not come cannot be waited for otherwise.
    QVERIFY(!initDone.wait(startUpTimeoutMs + 1000));
}

void RegionStartUpTest::timeoutWithoutACommandEndsTheStart()
{
    NetworkSettings settings;
    const QSignalSpy initDone(&settings, &NetworkSettings::initDone);

    settings.timeout();
    QCOMPARE(initDone.count(), 1);
    QVERIFY(log().messages().isEmpty());
}

void RegionStartUpTest::eachStartEndsOnce()
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

void RegionStartUpTest::startFromWithinTheEndOfAnotherHasItsOwnTimer()
{
    storeRegion("SE");
    NetworkSettings settings;
    int ends = 0;
    connect(&settings, &NetworkSettings::initDone, this, [&] {
        if (++ends == 1) {
            commands().removeProgram(QStringLiteral("iw"));
            settings.applyStoredWifiRegion();
        }
    });
    settings.applyStoredWifiRegion();

    QTRY_COMPARE_WITH_TIMEOUT(ends, 2, eventTimeoutMs);
    QCOMPARE(commands().calls(), QStringList(setSe));
}

void RegionStartUpTest::settingTheRegionWaitsForTheCommandStillRunning()
{
    storeRegion("SE");
    commands().script(setSe, {QStringLiteral("hold"), QStringLiteral("print done")});
    NetworkSettings settings;
    const QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();
    QVERIFY(commands().waitForCall(setSe));

    std::thread release = releaseLater();
    const bool applied = settings.setWifiRegion(QStringLiteral("DE"));
    release.join();
    QVERIFY(applied);
    QCOMPARE(commands().calls(), QStringList({setSe, setDe}));
    QCOMPARE(debugLines(), QStringList({successLine, successLine}));
    QCOMPARE(initDone.count(), 2);
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\n"));
}

void RegionStartUpTest::settingTheRegionWhenTheStartIsGivenUpWaitsForTheKilledCommand()
{
    storeRegion("SE");
    commands().script(setSe, {QStringLiteral("hang")});
    NetworkSettings settings;
    int ends = 0;
    bool applied = false;
    QElapsedTimer waiting;
    qint64 waitedMs = 0;
    connect(&settings, &NetworkSettings::initDone, this, [&] {
        if (++ends == 1) {
            waiting.start();
            applied = settings.setWifiRegion(QStringLiteral("DE"));
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

void RegionStartUpTest::startingAgainWhileTheCommandRunsWaitsForIt()
{
    storeRegion("SE");
    commands().script(QStringLiteral("iw"), {QStringLiteral("once"), QStringLiteral("hold")});
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

void RegionStartUpTest::endOfTheObjectEndsTheCommand()
{
    storeRegion("SE");
    commands().script(QStringLiteral("iw"), {QStringLiteral("hang")});
    auto settings = std::make_unique<NetworkSettings>();
    const QSignalSpy initDone(settings.get(), &NetworkSettings::initDone);
    settings->applyStoredWifiRegion();
    QVERIFY(commands().waitForCall(setSe));

    settings.reset();
    QCOMPARE(initDone.count(), 0);
    QVERIFY(log().messages().isEmpty());
}

int main(int argc, char **argv)
{
    return private_world::run<RegionStartUpTest>(argc, argv);
}
#include "RegionStartUpTest.moc"
