#include "EventWait.h"
#include "NetworkSettings.h"
#include "RegionFixture.h"
#include "Suite.h"
#include "Text.h"

using test_support::eventTimeoutMs;

/// The region's way through the daemon's start, where nobody waits for its command.
class RegionStartUpTest : public RegionFixture
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
};

void RegionStartUpTest::lockedFirstStartAppliesTheWorldRegion()
{
    setStore(regionStore, "[wifi]\nregionLocked=true\n");
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();

    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(commands().calls(), QStringList("iw reg set 00"_s));
    QCOMPARE(complaints(), QStringList(networkSettingsLine("Lock active. Unable to set region to \"US\""_s)));
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
    QCOMPARE(complaints(), QStringList());
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
    QCOMPARE(complaints(), QStringList());
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
    QCOMPARE(commands().calls(), QStringList("iw reg set 000"_s));
}

void RegionStartUpTest::lockedFirstStartAppliesTheRegionInForce()
{
    NetworkSettings settings;
    QVERIFY(settings.setWifiRegion("DE"_s));
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
    QCOMPARE(commands().calls(), QStringList("iw reg set 00"_s));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=00\nregionLocked=true\n"));
    QCOMPARE(complaints(), QStringList(networkSettingsLine("Lock active. Unable to set region to \"US\""_s)));
}

void RegionStartUpTest::firstStartWhereTheRegionCannotBeStoredAppliesTheRegionInForce()
{
    NetworkSettings settings;
    QVERIFY(settings.setWifiRegion("DE"_s));
    setStore(regionStore, "");
    commands().clearCalls();
    commands().script(setUs, {"crash"_s});

    NetworkSettings emptySettings;
    QSignalSpy initDone(&emptySettings, &NetworkSettings::initDone);
    emptySettings.applyStoredWifiRegion();
    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(commands().calls(), QStringList({setUs, setDe}));
    QCOMPARE(complaints(), QStringList(plainLine("Failed to set region."_s)));
    QCOMPARE(store(regionStore), QByteArray(""));
}

void RegionStartUpTest::regionSetLaterIsTheRegionInForce()
{
    storeRegion("SE");
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();
    QVERIFY(initDone.wait(eventTimeoutMs));
    QVERIFY(settings.setWifiRegion("DE"_s));
    commands().clearCalls();

    settings.applyStoredWifiRegion();
    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(commands().calls(), QStringList(setDe));
}

void RegionStartUpTest::startDoesNotWaitForTheCommand()
{
    storeRegion("SE");
    commands().script("iw"_s, {"hold"_s});
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
    commands().script("iw"_s, {"exit 237"_s});
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();

    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(debugLines(), QStringList(successLine));
    QCOMPARE(complaints(), QStringList());
}

void RegionStartUpTest::crashedCommandEndsTheStart()
{
    storeRegion("SE");
    commands().script("iw"_s, {"crash"_s});
    NetworkSettings settings;
    QSignalSpy initDone(&settings, &NetworkSettings::initDone);
    settings.applyStoredWifiRegion();

    QVERIFY(initDone.wait(eventTimeoutMs));
    QCOMPARE(initDone.count(), 1);
    QCOMPARE(debugLines(), QStringList(failureLine));
    QCOMPARE(complaints(), QStringList());
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\n"));
}

static const Suite<RegionStartUpTest> regionStartUpTest;
#include "RegionStartUpTest.moc"
