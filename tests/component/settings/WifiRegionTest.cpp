#include "NetworkSettings.h"
#include "RegionFixture.h"
#include "Suite.h"
#include "Text.h"

#include <QElapsedTimer>

class WifiRegionTest : public RegionFixture
{
    Q_OBJECT

private slots:
    void noRegionIsStoredAtFirst();
    void storedRegionIsRead();
    void regionThatIsNoTextIsEmpty();
    void settingTheRegionRunsOneCommandAndStoresIt();
    void settingTheRegionReplacesTheStoredOne();
    void settingTheRegionRemovesWhatIsBelowItsKey();
    void settingTheRegionEndsWithInitDone();
    void regionIsPassedOnAsGiven_data();
    void regionIsPassedOnAsGiven();
    void exitCodeOfTheCommandIsNotLookedAt();
    void crashedCommandLeavesTheStoredRegion();
    void missingCommandLeavesTheStoredRegion();
    void hangingCommandIsGivenUpAfterThirtySeconds();
    void regionCanBeSetAfterAFailure();
    void unwritableStoreIsOneLineAndTheRegionIsAppliedAllTheSame();
    void storeThatBecameWritableIsWrittenWithoutComplaint();
    void everyReportedEndIsLoggedAndTold_data();
    void everyReportedEndIsLoggedAndTold();
    void endIsLoggedBeforeItIsTold();
};

void WifiRegionTest::noRegionIsStoredAtFirst()
{
    QCOMPARE(NetworkSettings().getWifiRegion(), QString());
}

void WifiRegionTest::storedRegionIsRead()
{
    setStore(regionStore, "[wifi]\nregion=SE\n");
    QCOMPARE(NetworkSettings().getWifiRegion(), "SE"_s);
}

void WifiRegionTest::regionThatIsNoTextIsEmpty()
{
    setStore(regionStore, "[wifi]\nregion=S, E\n");
    QCOMPARE(NetworkSettings().getWifiRegion(), QString());
}

void WifiRegionTest::settingTheRegionRunsOneCommandAndStoresIt()
{
    NetworkSettings settings;

    QVERIFY(settings.setWifiRegion("DE"_s));
    QCOMPARE(commands().calls(), QStringList("iw reg set DE"_s));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\n"));
    QCOMPARE(settings.getWifiRegion(), "DE"_s);
    QCOMPARE(complaints(), QStringList());
}

void WifiRegionTest::settingTheRegionReplacesTheStoredOne()
{
    setStore(regionStore, "[wifi]\nregion=SE\n");
    NetworkSettings settings;

    QVERIFY(settings.setWifiRegion("DE"_s));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\n"));
}

// The key is removed before it is set, and with a key QSettings removes the keys below it.
void WifiRegionTest::settingTheRegionRemovesWhatIsBelowItsKey()
{
    setStore(regionStore, "[wifi]\nregion=SE\nregion\\since=2019\n");
    NetworkSettings settings;

    QVERIFY(settings.setWifiRegion("DE"_s));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\n"));
}

void WifiRegionTest::settingTheRegionEndsWithInitDone()
{
    NetworkSettings settings;
    const QSignalSpy initDone(&settings, &NetworkSettings::initDone);

    QVERIFY(settings.setWifiRegion("DE"_s));
    QCOMPARE(initDone.count(), 1);
    QCOMPARE(debugLines(), QStringList(successLine));
}

void WifiRegionTest::regionIsPassedOnAsGiven_data()
{
    QTest::addColumn<QString>("region");
    QTest::addColumn<QString>("call");

    QTest::newRow("lower case") << "de"_s
                                << "iw reg set de"_s;
    QTest::newRow("no region at all") << "nowhere"_s
                                      << "iw reg set nowhere"_s;
    QTest::newRow("world") << "00"_s
                           << "iw reg set 00"_s;
    QTest::newRow("empty") << QString() << "iw reg set \"\""_s;
    QTest::newRow("with a blank") << "D E"_s
                                  << "iw reg set \"D E\""_s;
    QTest::newRow("place holder") << "%1"_s
                                  << "iw reg set %1"_s;
    QTest::newRow("shell syntax") << "$(reboot)"_s
                                  << "iw reg set $(reboot)"_s;
}

void WifiRegionTest::regionIsPassedOnAsGiven()
{
    QFETCH(QString, region);
    QFETCH(QString, call);
    NetworkSettings settings;

    QVERIFY(settings.setWifiRegion(region));
    QCOMPARE(commands().calls(), QStringList(call));
    QCOMPARE(NetworkSettings().getWifiRegion(), region);
}

void WifiRegionTest::exitCodeOfTheCommandIsNotLookedAt()
{
    commands().script("iw"_s, {"exit 237"_s});
    NetworkSettings settings;

    QVERIFY(settings.setWifiRegion("DE"_s));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\n"));
    QCOMPARE(debugLines(), QStringList(successLine));
    QCOMPARE(complaints(), QStringList());
}

void WifiRegionTest::crashedCommandLeavesTheStoredRegion()
{
    setStore(regionStore, "[wifi]\nregion=SE\n");
    commands().script("iw"_s, {"crash"_s});
    NetworkSettings settings;
    const QSignalSpy initDone(&settings, &NetworkSettings::initDone);

    QVERIFY(!settings.setWifiRegion("DE"_s));
    QCOMPARE(commands().calls(), QStringList("iw reg set DE"_s));
    QCOMPARE(complaints(), QStringList(plainLine("Failed to set region."_s)));
    QCOMPARE(debugLines(), QStringList(failureLine));
    QCOMPARE(initDone.count(), 1);
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\n"));
    QCOMPARE(settings.getWifiRegion(), "SE"_s);
}

void WifiRegionTest::missingCommandLeavesTheStoredRegion()
{
    setStore(regionStore, "[wifi]\nregion=SE\n");
    commands().removeProgram("iw"_s);
    NetworkSettings settings;

    QVERIFY(!settings.setWifiRegion("DE"_s));
    QCOMPARE(complaints(), QStringList(plainLine("Failed to set region."_s)));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\n"));
}

// The only test that really waits that long: the duration itself is the behaviour.
void WifiRegionTest::hangingCommandIsGivenUpAfterThirtySeconds()
{
    setStore(regionStore, "[wifi]\nregion=SE\n");
    commands().script("iw"_s, {"hang"_s});
    NetworkSettings settings;
    QElapsedTimer elapsed;
    elapsed.start();

    QVERIFY(!settings.setWifiRegion("DE"_s));
    QVERIFY2(elapsed.elapsed() >= 29900, qPrintable(QString::number(elapsed.elapsed())));
    QCOMPARE(complaints(), QStringList(plainLine("Failed to set region."_s)));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\n"));
}

void WifiRegionTest::regionCanBeSetAfterAFailure()
{
    commands().script("iw"_s, {"once"_s, "crash"_s});
    NetworkSettings settings;
    QVERIFY(!settings.setWifiRegion("DE"_s));

    QVERIFY(settings.setWifiRegion("SE"_s));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\n"));
}

void WifiRegionTest::unwritableStoreIsOneLineAndTheRegionIsAppliedAllTheSame()
{
    NetworkSettings settings;
    setStoresWritable(false);

    QVERIFY(settings.setWifiRegion("DE"_s));
    QCOMPARE(commands().calls(), QStringList("iw reg set DE"_s));
    QCOMPARE(complaints(), QStringList(networkSettingsLine(
                               "Unable to write settings file \"/etc/xdg/Tactora AB/region.conf\""_s)));
    QCOMPARE(settings.getWifiRegion(), "DE"_s);
}

void WifiRegionTest::storeThatBecameWritableIsWrittenWithoutComplaint()
{
    NetworkSettings settings;
    setStoresWritable(false);
    QVERIFY(settings.setLockRegion(true));
    QCOMPARE(log().takeCriticals().size(), 1);

    setStoresWritable(true);
    QVERIFY(settings.setLockRegion(false));
    QVERIFY(settings.setWifiRegion("DE"_s));
    QCOMPARE(complaints(), QStringList());
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\nregionLocked=false\n"));
}

void WifiRegionTest::everyReportedEndIsLoggedAndTold_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<bool>("crashed");
    QTest::addColumn<QString>("line");

    QTest::newRow("normal") << 0 << false << successLine;
    QTest::newRow("normal, exit code not zero") << 237 << false << successLine;
    QTest::newRow("crash") << 0 << true << failureLine;
    QTest::newRow("crash, exit code not zero") << 9 << true << failureLine;
}

void WifiRegionTest::everyReportedEndIsLoggedAndTold()
{
    QFETCH(int, exitCode);
    QFETCH(bool, crashed);
    QFETCH(QString, line);
    NetworkSettings settings;
    const QSignalSpy initDone(&settings, &NetworkSettings::initDone);

    settings.finished(exitCode, crashed ? QProcess::CrashExit : QProcess::NormalExit);
    QCOMPARE(debugLines(), QStringList(line));
    QCOMPARE(initDone.count(), 1);
}

void WifiRegionTest::endIsLoggedBeforeItIsTold()
{
    NetworkSettings settings;
    QStringList linesWhenTold;
    connect(&settings, &NetworkSettings::initDone, this, [&] { linesWhenTold = debugLines(); });

    settings.finished(0, QProcess::NormalExit);
    QCOMPARE(linesWhenTold, QStringList(successLine));
}

static const Suite<WifiRegionTest> wifiRegionTest;
#include "WifiRegionTest.moc"
