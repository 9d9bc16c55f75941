#include "NetworkSettings.h"
#include "RegionFixture.h"
#include "Suite.h"
#include "Text.h"

/// The lock of the region.
class RegionLockTest : public RegionFixture
{
    Q_OBJECT

private slots:
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

void RegionLockTest::regionIsUnlockedAtFirst()
{
    QVERIFY(!NetworkSettings().getLockRegion());
}

void RegionLockTest::storedLockIsRead_data()
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

void RegionLockTest::storedLockIsRead()
{
    QFETCH(QByteArray, value);
    setStore(regionStore, "[wifi]\nregionLocked=" + value + '\n');
    QTEST(NetworkSettings().getLockRegion(), "locked");
}

void RegionLockTest::lockRefusesEveryChange()
{
    setStore(regionStore, "[wifi]\nregion=SE\nregionLocked=true\n");
    NetworkSettings settings;
    const QSignalSpy initDone(&settings, &NetworkSettings::initDone);

    QVERIFY(!settings.setWifiRegion("DE"_s));
    QCOMPARE(complaints(), QStringList(networkSettingsLine("Lock active. Unable to set region to \"DE\""_s)));
    QCOMPARE(commands().calls(), QStringList());
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\nregionLocked=true\n"));
    QCOMPARE(initDone.count(), 0);
}

void RegionLockTest::lockLeavesTheRegionReadable()
{
    setStore(regionStore, "[wifi]\nregion=SE\nregionLocked=true\n");
    QCOMPARE(NetworkSettings().getWifiRegion(), "SE"_s);
}

void RegionLockTest::settingTheLockStoresIt_data()
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

void RegionLockTest::settingTheLockStoresIt()
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

void RegionLockTest::regionCanBeSetOnceUnlocked()
{
    setStore(regionStore, "[wifi]\nregionLocked=true\n");
    NetworkSettings settings;

    QVERIFY(settings.setLockRegion(false));
    QVERIFY(settings.setWifiRegion("DE"_s));
    QCOMPARE(settings.getWifiRegion(), "DE"_s);
}

void RegionLockTest::lockAndRegionShareOneStore()
{
    NetworkSettings settings;
    QVERIFY(settings.setWifiRegion("DE"_s));
    QVERIFY(settings.setLockRegion(true));

    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\nregionLocked=true\n"));
    QCOMPARE(store("main"_s), QByteArray());
}

static const Suite<RegionLockTest> regionLockTest;
#include "RegionLockTest.moc"
