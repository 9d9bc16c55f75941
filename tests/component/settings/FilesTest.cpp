#include "MountNamespace.h"
#include "SettingsFixture.h"
#include "Suite.h"
#include "Text.h"
#include "WrittenFiles.h"

#include <csignal>

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>

#include <sys/stat.h>

using namespace written_files;

namespace {

const QString workDirectory = ".network-manager.new"_s;
const QString writeForEver = "--write-for-ever"_s;

void writeUntilKilled()
{
    NetworkSettings settings;
    for (bool odd = true;; odd = !odd) {
        writeEverything(settings, odd);
        putchar('.');
        fflush(stdout);
    }
}

int permissions(const QString &path)
{
    struct stat status = {};
    return stat(qPrintable(path), &status) == 0 ? static_cast<int>(status.st_mode & 07777U) : -1;
}

} // namespace

/// How files are written: whole, whatever happens, and leaving nothing else behind.
class FilesTest : public SettingsFixture
{
    Q_OBJECT

private slots:
    void killLeavesEveryFileWhole();
    void leftOversOfAPowerCutGoWithTheNextWrite();
    void leftOverLockOfAStoreDelaysNothing_data();
    void leftOverLockOfAStoreDelaysNothing();
    void nothingButTheFilesIsLeftInTheirDirectories();

    void malformedLineInAStoreIsNoFailure();
    void malformedLineHidesNoFailure();
    void linkIsFollowed_data();
    void linkIsFollowed();
    void newFilesAreWritableByTheirOwnerOnly();
    void earlierFilesBecomeWritableByTheirOwnerOnly();
};

void FilesTest::killLeavesEveryFileWhole()
{
    constexpr int kills = 40;
    constexpr int aFewWritesUs = 3000;
    for (int i = 0; i < kills; ++i) {
        QProcess writer;
        writer.start(QCoreApplication::applicationFilePath(), {writeForEver});
        QVERIFY(writer.waitForReadyRead());
        // Any instant will do.
        std::this_thread::sleep_for(
            std::chrono::microseconds(QRandomGenerator::global()->bounded(aFewWritesUs)));
        writer.kill();
        QVERIFY(writer.waitForFinished());
        QCOMPARE(writer.exitStatus(), QProcess::CrashExit);

        const QByteArrayList wholeProvisioningFiles{provisioningText(false), provisioningText(true)};
        QVERIFY2(wholeProvisioningFiles.contains(fileContent(corpFile)), fileContent(corpFile).constData());
        const QByteArrayList wholeHostNames{longName(false).toUtf8(), longName(true).toUtf8()};
        QVERIFY2(wholeHostNames.contains(fileContent(hostNameFile)), fileContent(hostNameFile).constData());
        const QByteArrayList wholeStores{lockText(false), lockText(true)};
        QVERIFY2(wholeStores.contains(store(regionStore)), store(regionStore).constData());
    }
    NetworkSettings settings;
    QVERIFY(writeEverything(settings, true));
    QCOMPARE(entries(connmanDirectory), QStringList("corp.config"_s));
    QCOMPARE(entries(storesDirectory), QStringList("region.conf"_s));
    QVERIFY(!entries("/etc"_s).contains(workDirectory));
}

void FilesTest::leftOversOfAPowerCutGoWithTheNextWrite()
{
    for (const QString &directory : {connmanDirectory, storesDirectory, "/etc"_s}) {
        const QString left = directory + QLatin1Char('/') + workDirectory;
        QVERIFY(QDir().mkpath(left + "/deeper"_s));
        for (const QString &name : {"corp.config"_s, "region.conf"_s, "hostname"_s}) {
            writeFile(left + QLatin1Char('/') + name, "ha");
        }
    }
    NetworkSettings settings;
    QVERIFY(writeEverything(settings, true));
    QCOMPARE(fileContent(corpFile), provisioningText(true));
    QCOMPARE(fileContent(hostNameFile), longName(true).toUtf8());
    QCOMPARE(store(regionStore), lockText(true));
    QCOMPARE(entries(connmanDirectory), QStringList("corp.config"_s));
    QCOMPARE(entries(storesDirectory), QStringList("region.conf"_s));
    QVERIFY(!entries("/etc"_s).contains(workDirectory));
}

void FilesTest::leftOverLockOfAStoreDelaysNothing_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("of this very process") << QByteArray::number(QCoreApplication::applicationPid()) +
                                                 "\nFilesTest\n" + QSysInfo::machineHostName().toUtf8() +
                                                 '\n';
}

void FilesTest::leftOverLockOfAStoreDelaysNothing()
{
    constexpr qint64 muchLessThanALockIsWaitedForMs = 15000;
    QFETCH(QByteArray, content);
    writeFile(regionFile + ".lock"_s, content);
    QElapsedTimer elapsed;
    elapsed.start();

    NetworkSettings().setLockRegion(true);
    QCOMPARE(store(regionStore), lockText(true));
    QVERIFY2(elapsed.elapsed() < muchLessThanALockIsWaitedForMs,
             qPrintable(QString::number(elapsed.elapsed())));
}

void FilesTest::nothingButTheFilesIsLeftInTheirDirectories()
{
    NetworkSettings settings;
    QVERIFY(writeEverything(settings, true));
    QCOMPARE(entries(connmanDirectory), QStringList("corp.config"_s));
    QCOMPARE(entries(storesDirectory), QStringList("region.conf"_s));
    QVERIFY(!entries("/etc"_s).contains(workDirectory));
    QCOMPARE(complaints(), QStringList());
}

void FilesTest::malformedLineInAStoreIsNoFailure()
{
    setStore(regionStore, "[wifi]\nregion=SE\nno equals sign\n");
    NetworkSettings settings;

    QVERIFY(settings.setLockRegion(true));
    QCOMPARE(complaints(), QStringList());
    QCOMPARE(store(regionStore), QByteArray("[wifi]\nregion=SE\nregionLocked=true\n"));
}

void FilesTest::malformedLineHidesNoFailure()
{
    setStore(regionStore, "[wifi]\nregion=SE\nno equals sign\n");
    NetworkSettings settings;
    setStoresWritable(false);

    QVERIFY(settings.setLockRegion(true));
    QCOMPARE(complaints(), QStringList(networkSettingsLine(
                               "Unable to write settings file \"/etc/xdg/Tactora AB/region.conf\""_s)));
}

void FilesTest::linkIsFollowed_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("settings") << regionFile;
    QTest::newRow("host name") << hostNameFile;
    QTest::newRow("provisioning file") << corpFile;
}

void FilesTest::linkIsFollowed()
{
    QFETCH(QString, path);
    const QString target = "/var/lib/"_s + QFileInfo(path).fileName();
    writeFile(target, {});
    QVERIFY(QFile::link(target, path));
    NetworkSettings settings;
    QVERIFY(writeEverything(settings, true));
    QCOMPARE(QFile::symLinkTarget(path), target);
    QVERIFY(!fileContent(target).isEmpty());
    QVERIFY(QFile::remove(target));
}

void FilesTest::newFilesAreWritableByTheirOwnerOnly()
{
    const mode_t previous = umask(0);
    NetworkSettings settings;
    const bool written = writeEverything(settings, true);
    umask(previous);
    QVERIFY(written);
    QCOMPARE(permissions(corpFile), 0644);
    QCOMPARE(permissions(hostNameFile), 0644);
    QCOMPARE(permissions(regionFile), 0644);
}

void FilesTest::earlierFilesBecomeWritableByTheirOwnerOnly()
{
    for (const QString &path : {corpFile, hostNameFile, regionFile}) {
        writeFile(path, {});
        QCOMPARE(chmod(qPrintable(path), 0666), 0);
    }
    QCOMPARE(chmod(qPrintable(hostNameFile), 0600), 0);
    NetworkSettings settings;
    QVERIFY(writeEverything(settings, true));
    QCOMPARE(permissions(corpFile), 0644);
    QCOMPARE(permissions(hostNameFile), 0600);
    QCOMPARE(permissions(regionFile), 0644);
}

static const Suite<FilesTest> filesTest;

int main(int argc, char **argv)
{
    if (argc > 1 && writeForEver == QLatin1String(argv[1])) {
        const QCoreApplication application(argc, argv);
        mount_namespace::setIdentity();
        writeUntilKilled();
    }
    return mount_namespace::run(argc, argv);
}
#include "FilesTest.moc"
