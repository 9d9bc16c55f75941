#include "SettingsFixture.h"
#include "Suite.h"
#include "Text.h"
#include "WrittenFiles.h"

#include <QFile>

using namespace written_files;

namespace {

/// Takes all room of a file system until it ends.
class FullDisk
{
public:
    explicit FullDisk(const QString &directory)
        : m_filler(directory + "/filler"_s)
    {
        if (m_filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
            while (m_filler.write(QByteArray(4096, 'x')) > 0) {
            }
        }
    }
    ~FullDisk() { m_filler.remove(); }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    QFile m_filler;
};

} // namespace

/// What becomes of files when there is no room for them.
class FullDiskTest : public SettingsFixture
{
    Q_OBJECT

private slots:
    void fullDiskLeavesNoProvisioningFile();
    void fullDiskLeavesTheEarlierProvisioningFile();
    void fullDiskLeavesTheEarlierSettings();
    void fullDiskLetsTheHostNameBeWrittenOverTheOldOne();
    void fullDiskIsNamedWhereTheHostNameCannotBeWritten();
    void fullDiskIsNamedWhereThereIsNoHostName();
};

void FullDiskTest::fullDiskLeavesNoProvisioningFile()
{
    NetworkSettings settings;
    const FullDisk full("/var"_s);

    QVERIFY(!settings.createWpaConfFile(corp, corp, corp, corp));
    QCOMPARE(complaints(),
             QStringList(networkSettingsLine(
                 "Unable to write file \"/var/lib/connman/corp.config\" \"No space left on device\""_s)));
    QCOMPARE(entries(connmanDirectory), QStringList());
}

void FullDiskTest::fullDiskLeavesTheEarlierProvisioningFile()
{
    NetworkSettings settings;
    QVERIFY(writeEverything(settings, true));
    const FullDisk full("/var"_s);

    QVERIFY(!settings.createWpaConfFile(corp, corp, corp, corp));
    QCOMPARE(fileContent(corpFile), provisioningText(true));
    QCOMPARE(entries(connmanDirectory), QStringList("corp.config"_s));
}

void FullDiskTest::fullDiskLeavesTheEarlierSettings()
{
    NetworkSettings settings;
    settings.setLockRegion(true);
    {
        const FullDisk full("/etc"_s);
        QVERIFY(settings.setLockRegion(false));
        QCOMPARE(complaints(), QStringList(networkSettingsLine(
                                   "Unable to write settings file \"/etc/xdg/Tactora AB/region.conf\""_s)));
        QCOMPARE(store(regionStore), lockText(true));
        QCOMPARE(entries(storesDirectory), QStringList("region.conf"_s));
        QVERIFY(!settings.getLockRegion());
    }
    QVERIFY(settings.setWifiRegion("DE"_s));
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=DE\nregionLocked=false\n"));
}

void FullDiskTest::fullDiskLetsTheHostNameBeWrittenOverTheOldOne()
{
    writeFile(hostNameFile, "a-long-old-name\n");
    NetworkSettings settings;
    const FullDisk full("/etc"_s);

    QVERIFY(settings.setHostName("box"_s));
    QCOMPARE(fileContent(hostNameFile), QByteArray("box"));
    QCOMPARE(complaints(), QStringList());
}

void FullDiskTest::fullDiskIsNamedWhereTheHostNameCannotBeWritten()
{
    writeFile(hostNameFile, {});
    NetworkSettings settings;
    const FullDisk full("/etc"_s);

    QVERIFY(!settings.setHostName("box"_s));
    QCOMPARE(complaints(), QStringList(networkSettingsLine(
                               "Unable to write file \"/etc/hostname\" \"No space left on device\""_s)));
}

void FullDiskTest::fullDiskIsNamedWhereThereIsNoHostName()
{
    NetworkSettings settings;
    const FullDisk full("/etc"_s);

    QVERIFY(!settings.setHostName("box"_s));
    QCOMPARE(complaints(), QStringList(networkSettingsLine(
                               "Unable to write file \"/etc/hostname\" \"No space left on device\""_s)));
    QVERIFY(!QFile::exists(hostNameFile));
}

static const Suite<FullDiskTest> fullDiskTest;
#include "FullDiskTest.moc"
