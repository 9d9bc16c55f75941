#include "NetworkSettings.h"
#include "RegionFixture.h"
#include "Suite.h"

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
    QCOMPARE(NetworkSettings().getWifiRegion(), QStringLiteral("SE"));
}

void WifiRegionTest::regionThatIsNoTextIsEmpty()
{
    setStore(regionStore, "[wifi]\nregion=S, E\n");
    QCOMPARE(NetworkSettings().getWifiRegion(), QString());
}

void WifiRegionTest::settingTheRegionRunsOneCommandAndStoresIt()
{
    NetworkSettings settings;

    QVERIFY(settings.setWifiRegion(QStringLiteral("DE")));
    QCOMPARE(commands().calls(), QStringList(QStringLiteral("iw reg set DE")));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\n"));
    QCOMPARE(settings.getWifiRegion(), QStringLiteral("DE"));
    QCOMPARE(criticalLines(), QStringList());
}

void WifiRegionTest::settingTheRegionReplacesTheStoredOne()
{
    setStore(regionStore, "[wifi]\nregion=SE\n");
    NetworkSettings settings;

    QVERIFY(settings.setWifiRegion(QStringLiteral("DE")));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\n"));
}

// The key is removed before it is set, and with a key QSettings removes the keys below it.
void WifiRegionTest::settingTheRegionRemovesWhatIsBelowItsKey()
{
    setStore(regionStore, "[wifi]\nregion=SE\nregion\\since=2019\n");
    NetworkSettings settings;

    QVERIFY(settings.setWifiRegion(QStringLiteral("DE")));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\n"));
}

void WifiRegionTest::settingTheRegionEndsWithInitDone()
{
    NetworkSettings settings;
    const QSignalSpy initDone(&settings, &NetworkSettings::initDone);

    QVERIFY(settings.setWifiRegion(QStringLiteral("DE")));
    QCOMPARE(initDone.count(), 1);
    QCOMPARE(debugLines(), QStringList(successLine));
}

void WifiRegionTest::regionIsPassedOnAsGiven_data()
{
    QTest::addColumn<QString>("region");
    QTest::addColumn<QString>("call");

    QTest::newRow("lower case") << QStringLiteral("de") << QStringLiteral("iw reg set de");
    QTest::newRow("no region at all") << QStringLiteral("nowhere") << QStringLiteral("iw reg set nowhere");
    QTest::newRow("world") << QStringLiteral("00") << QStringLiteral("iw reg set 00");
    QTest::newRow("empty") << QString() << QStringLiteral("iw reg set \"\"");
    QTest::newRow("with a blank") << QStringLiteral("D E") << QStringLiteral("iw reg set \"D E\"");
    QTest::newRow("place holder") << QStringLiteral("%1") << QStringLiteral("iw reg set %1");
    QTest::newRow("shell syntax") << QStringLiteral("$(reboot)") << QStringLiteral("iw reg set $(reboot)");
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
    commands().script(QStringLiteral("iw"), {QStringLiteral("exit 237")});
    NetworkSettings settings;

    QVERIFY(settings.setWifiRegion(QStringLiteral("DE")));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\n"));
    QCOMPARE(debugLines(), QStringList(successLine));
    QCOMPARE(criticalLines(), QStringList());
}

void WifiRegionTest::crashedCommandLeavesTheStoredRegion()
{
    setStore(regionStore, "[wifi]\nregion=SE\n");
    commands().script(QStringLiteral("iw"), {QStringLiteral("crash")});
    NetworkSettings settings;
    const QSignalSpy initDone(&settings, &NetworkSettings::initDone);

    QVERIFY(!settings.setWifiRegion(QStringLiteral("DE")));
    QCOMPARE(commands().calls(), QStringList(QStringLiteral("iw reg set DE")));
    QCOMPARE(criticalLines(), QStringList(plainLine(QStringLiteral("Failed to set region."))));
    QCOMPARE(debugLines(), QStringList(failureLine));
    QCOMPARE(initDone.count(), 1);
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\n"));
    QCOMPARE(settings.getWifiRegion(), QStringLiteral("SE"));
}

void WifiRegionTest::missingCommandLeavesTheStoredRegion()
{
    setStore(regionStore, "[wifi]\nregion=SE\n");
    commands().removeProgram(QStringLiteral("iw"));
    NetworkSettings settings;

    QVERIFY(!settings.setWifiRegion(QStringLiteral("DE")));
    QCOMPARE(criticalLines(), QStringList(plainLine(QStringLiteral("Failed to set region."))));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\n"));
}

// The only test that really waits that long: the duration itself is the behaviour.
void WifiRegionTest::hangingCommandIsGivenUpAfterThirtySeconds()
{
    setStore(regionStore, "[wifi]\nregion=SE\n");
    commands().script(QStringLiteral("iw"), {QStringLiteral("hang")});
    NetworkSettings settings;
    QElapsedTimer elapsed;
    elapsed.start();

    QVERIFY(!settings.setWifiRegion(QStringLiteral("DE")));
    QVERIFY2(elapsed.elapsed() >= 29900, qPrintable(QString::number(elapsed.elapsed())));
    QCOMPARE(criticalLines(), QStringList(plainLine(QStringLiteral("Failed to set region."))));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\n"));
}

void WifiRegionTest::regionCanBeSetAfterAFailure()
{
    commands().script(QStringLiteral("iw"), {QStringLiteral("once"), QStringLiteral("crash")});
    NetworkSettings settings;
    QVERIFY(!settings.setWifiRegion(QStringLiteral("DE")));

    QVERIFY(settings.setWifiRegion(QStringLiteral("SE")));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\n"));
}

void WifiRegionTest::unwritableStoreIsOneLineAndTheRegionIsAppliedAllTheSame()
{
    NetworkSettings settings;
    setStoresWritable(false);

    QVERIFY(settings.setWifiRegion(QStringLiteral("DE")));
    QCOMPARE(commands().calls(), QStringList(QStringLiteral("iw reg set DE")));
    QCOMPARE(criticalLines(), QStringList(networkSettingsLine(QStringLiteral(
                                  "Unable to write settings file \"/etc/xdg/Tactora AB/region.conf\""))));
    QCOMPARE(settings.getWifiRegion(), QStringLiteral("DE"));
}

void WifiRegionTest::storeThatBecameWritableIsWrittenWithoutComplaint()
{
    NetworkSettings settings;
    setStoresWritable(false);
    QVERIFY(settings.setLockRegion(true));
    QCOMPARE(log().takeCriticals().size(), 1);

    setStoresWritable(true);
    QVERIFY(settings.setLockRegion(false));
    QVERIFY(settings.setWifiRegion(QStringLiteral("DE")));
    QCOMPARE(criticalLines(), QStringList());
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

static const Suite<WifiRegionTest> suite;
#include "WifiRegionTest.moc"
