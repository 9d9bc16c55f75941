#include "NetworkSettings.h"
#include "PrivateWorld.h"
#include "RegionFixture.h"

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

    void regionIsUnlockedAtFirst();
    void storedLockIsRead_data();
    void storedLockIsRead();
    void lockRefusesEveryChange();
    void lockLeavesTheRegionReadable();
    void settingTheLockStoresIt_data();
    void settingTheLockStoresIt();
    void regionCanBeSetOnceUnlocked();
    void lockAndRegionShareOneStore();
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

void WifiRegionTest::regionIsUnlockedAtFirst()
{
    QVERIFY(!NetworkSettings().getLockRegion());
}

void WifiRegionTest::storedLockIsRead_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("locked");

    QTest::newRow("true") << QByteArray("true") << true;
    QTest::newRow("false") << QByteArray("false") << false;
    QTest::newRow("one") << QByteArray("1") << true;
    QTest::newRow("zero") << QByteArray("0") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("not convertible") << QByteArray("true, true") << false;
}

void WifiRegionTest::storedLockIsRead()
{
    QFETCH(QByteArray, value);
    setStore(regionStore, "[wifi]\nregionLocked=" + value + '\n');
    QTEST(NetworkSettings().getLockRegion(), "locked");
}

void WifiRegionTest::lockRefusesEveryChange()
{
    setStore(regionStore, "[wifi]\nregion=SE\nregionLocked=true\n");
    NetworkSettings settings;
    const QSignalSpy initDone(&settings, &NetworkSettings::initDone);

    QVERIFY(!settings.setWifiRegion(QStringLiteral("DE")));
    QCOMPARE(criticalLines(),
             QStringList(networkSettingsLine(QStringLiteral("Lock active. Unable to set region to \"DE\""))));
    QCOMPARE(commands().calls(), QStringList());
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\nregionLocked=true\n"));
    QCOMPARE(initDone.count(), 0);
}

void WifiRegionTest::lockLeavesTheRegionReadable()
{
    setStore(regionStore, "[wifi]\nregion=SE\nregionLocked=true\n");
    QCOMPARE(NetworkSettings().getWifiRegion(), QStringLiteral("SE"));
}

void WifiRegionTest::settingTheLockStoresIt_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<bool>("locked");
    QTest::addColumn<QByteArray>("after");

    const QByteArray on = "[wifi]\nregionLocked=true\n";
    const QByteArray off = "[wifi]\nregionLocked=false\n";
    QTest::newRow("on") << QByteArray() << true << on;
    QTest::newRow("off") << QByteArray() << false << off;
    QTest::newRow("off after on") << on << false << off;
    QTest::newRow("on again") << on << true << on;
    QTest::newRow("off, with a key below") << QByteArray("[wifi]\nregionLocked\\by=us\n") << false << off;
}

void WifiRegionTest::settingTheLockStoresIt()
{
    QFETCH(QByteArray, before);
    QFETCH(bool, locked);
    setStore(regionStore, before);
    NetworkSettings settings;

    QVERIFY(settings.setLockRegion(locked));
    QTEST(store(regionStore), "after");
    QCOMPARE(settings.getLockRegion(), locked);
    QCOMPARE(commands().calls(), QStringList());
}

void WifiRegionTest::regionCanBeSetOnceUnlocked()
{
    setStore(regionStore, "[wifi]\nregionLocked=true\n");
    NetworkSettings settings;

    QVERIFY(settings.setLockRegion(false));
    QVERIFY(settings.setWifiRegion(QStringLiteral("DE")));
    QCOMPARE(settings.getWifiRegion(), QStringLiteral("DE"));
}

void WifiRegionTest::lockAndRegionShareOneStore()
{
    NetworkSettings settings;
    QVERIFY(settings.setWifiRegion(QStringLiteral("DE")));
    QVERIFY(settings.setLockRegion(true));

    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\nregionLocked=true\n"));
    QCOMPARE(store(QStringLiteral("main")), QByteArray());
}

int main(int argc, char **argv)
{
    return private_world::run<WifiRegionTest>(argc, argv);
}
#include "WifiRegionTest.moc"
