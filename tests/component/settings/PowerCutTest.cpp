#include "MountNamespace.h"
#include "Suite.h"
#include "Text.h"
#include "WrittenFiles.h"

#include <QProcess>
#include <QTemporaryDir>

#include <unistd.h>

using namespace written_files;

namespace {

constexpr char InsideVariable[] = "IN_A_MOUNT_NAMESPACE";

bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

bool mount(const QStringList &arguments)
{
    return run("mount"_s, arguments);
}

/// Returns where mounts are the test's own, or, not being root, where there can be none.
void enterMountNamespace(char **arguments)
{
    if (geteuid() != 0 || qEnvironmentVariableIsSet(InsideVariable)) {
        return;
    }
    qputenv(InsideVariable, "1");
    mount_namespace::startAgain({"unshare"_s, "--mount"_s, "--propagation"_s, "private"_s}, arguments);
}

} // namespace

/// What is left of the files when the power goes right after they were written: a file system on a disk of
/// its own, whose content at that instant is looked at as after the next start.
class PowerCutTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void whatHasBeenWrittenOutlivesAPowerCut_data();
    void whatHasBeenWrittenOutlivesAPowerCut();

private:
    QString path(const char *name) const { return m_directory.filePath(QLatin1String(name)); }
    /// The content of a file of the device's disk, were the power to go now.
    QByteArray contentAfterPowerCut(const QString &file) const;

    QTemporaryDir m_directory;
};

void PowerCutTest::initTestCase()
{
    if (geteuid() != 0) {
        QSKIP("needs root: it mounts a file system");
    }
    constexpr qint64 diskSize = 16L * 1024 * 1024;
    QFile disk(path("disk"));
    QVERIFY(disk.open(QIODevice::WriteOnly) && disk.resize(diskSize));
    QVERIFY(run("mkfs.ext4"_s, {"-q"_s, path("disk")}));
    QVERIFY(QDir().mkdir(path("after")));
    QVERIFY(mount({"-t"_s, "tmpfs"_s, "tmpfs"_s, "/var/lib"_s}));
    QVERIFY(QDir().mkdir(connmanDirectory));
    if (!mount({"-o"_s, "loop"_s, path("disk"), connmanDirectory})) {
        QSKIP("there are no loop devices to be had");
    }
    const QString hostName = connmanDirectory + "/hostname"_s;
    QVERIFY(QFile(hostName).open(QIODevice::WriteOnly));
    QVERIFY(mount({"--bind"_s, hostName, hostNameFile}));
    qputenv("XDG_CONFIG_DIRS", QFile::encodeName(connmanDirectory));
}

void PowerCutTest::cleanupTestCase()
{
    run("umount"_s, {hostNameFile});
    run("umount"_s, {connmanDirectory});
}

QByteArray PowerCutTest::contentAfterPowerCut(const QString &file) const
{
    QFile::remove(path("disk-after"));
    if (!QFile::copy(path("disk"), path("disk-after")) ||
        !mount({"-o"_s, "loop"_s, path("disk-after"), path("after")})) {
        return "the disk cannot be looked at";
    }
    const QByteArray content = test_support::DeviceFiles::read(path("after") + QLatin1Char('/') + file);
    run("umount"_s, {path("after")});
    return content;
}

void PowerCutTest::whatHasBeenWrittenOutlivesAPowerCut_data()
{
    QTest::addColumn<bool>("odd");
    QTest::newRow("first") << true;
    QTest::newRow("second") << false;
    QTest::newRow("third") << true;
}

void PowerCutTest::whatHasBeenWrittenOutlivesAPowerCut()
{
    QFETCH(bool, odd);
    NetworkSettings settings;
    QVERIFY(settings.setLockRegion(odd));
    QCOMPARE(contentAfterPowerCut("Tactora AB/region.conf"_s), lockText(odd));

    QVERIFY(settings.createWpaConfFile(corp, longName(odd), "peap"_s, "MSCHAPV2"_s));
    QCOMPARE(contentAfterPowerCut("corp.config"_s), provisioningText(odd));

    QVERIFY(settings.setHostName(longName(odd)));
    QCOMPARE(contentAfterPowerCut("hostname"_s), longName(odd).toUtf8());
}

static const Suite<PowerCutTest> powerCutTest;

int main(int argc, char **argv)
{
    enterMountNamespace(argv);
    const QCoreApplication application(argc, argv);
    mount_namespace::setIdentity();
    return runSuite();
}
#include "PowerCutTest.moc"
