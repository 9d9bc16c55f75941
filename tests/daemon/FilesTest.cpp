#include "OperationsScene.h"
#include "Suite.h"

#include <QDirIterator>
#include <QTest>

#include <sys/stat.h>

using namespace test_support;

/// The files of the built daemon.
class FilesTest : public QObject
{
    Q_OBJECT

private slots:
    void hostNameThatIsAMountPointIsWritten();
    void leftOverLockOfAStoreHoldsNoClientUp();
    void nothingIsWritableByOthersWhateverTheStartersMask();
    void secretsAreInNoFile();
    void commandsInheritNoFile();
};

void FilesTest::hostNameThatIsAMountPointIsWritten()
{
    LonelyDaemon device;
    DaemonSandbox &sandbox = device.daemon.sandbox();
    sandbox.mountHostName("a-long-old-name\n");
    QVERIFY(device.start());

    QVERIFY(device.client.call("setHostName", "box-1"_s).toBool());
    QCOMPARE(sandbox.hostName(), QByteArray("box-1"));
    QVERIFY(device.client.call("setHostName", "a-much-longer-new-name"_s).toBool());
    QCOMPARE(sandbox.hostName(), QByteArray("a-much-longer-new-name"));
    QCOMPARE(device.client.call("getHostName").toString(), "a-much-longer-new-name"_s);
}

void FilesTest::leftOverLockOfAStoreHoldsNoClientUp()
{
    LonelyDaemon device;
    const QString lock = device.daemon.sandbox().hostPath("/etc/xdg/Tactora AB/region.conf.lock"_s);
    QVERIFY(QFile(lock).open(QIODevice::WriteOnly));
    QVERIFY(device.start());
    QVERIFY(device.client.call("setLockRegion", true).toBool());
    QCOMPARE(device.daemon.sandbox().settings("region"_s), QByteArray("[wifi]\nregionLocked=true\n"));
}

namespace {

/// Files and directories below /etc and /var that the daemon has made.
QStringList madeBelow(DaemonSandbox &sandbox)
{
    QStringList paths;
    for (const QString &top : {"/etc"_s, "/var"_s}) {
        QDirIterator found(sandbox.hostPath(top), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                           QDirIterator::Subdirectories);
        while (found.hasNext()) {
            paths << found.next();
        }
    }
    return paths;
}

} // namespace

void FilesTest::nothingIsWritableByOthersWhateverTheStartersMask()
{
    LonelyDaemon device;
    DaemonSandbox &sandbox = device.daemon.sandbox();
    QVERIFY(QDir(sandbox.hostPath("/etc/xdg"_s)).removeRecursively());
    const mode_t previous = umask(0);
    const bool isStarted = device.daemon.start();
    umask(previous);
    QVERIFY(isStarted && device.client.waitForName());

    QVERIFY(device.client.call("setLockRegion", true).toBool());
    QVERIFY(device.client.call("setHostName", "box-1"_s).toBool());
    const QStringList paths = madeBelow(sandbox);
    QVERIFY(paths.contains(sandbox.hostPath("/etc/xdg/Tactora AB/region.conf"_s)));
    for (const QString &path : paths) {
        struct stat status = {};
        QCOMPARE(lstat(qPrintable(path), &status), 0);
        QVERIFY2((status.st_mode & (S_IWGRP | S_IWOTH)) == 0 || S_ISLNK(status.st_mode), qPrintable(path));
    }
}

void FilesTest::secretsAreInNoFile()
{
    const QString secret = "right secret"_s;
    scene::Operations device;
    device.simulator.addNetwork({{"ssid"_s, "Corp"_s},
                                 {"security"_s, "ieee8021x"_s},
                                 {"passphrase"_s, secret},
                                 {"identity"_s, "some-identity"_s}});
    QVERIFY(device.begin());
    QVERIFY(device.client
                .call("registerWiFiWpa2Enterprise", "some-identity"_s, scene::corp, secret, "peap"_s,
                      "MSCHAPV2"_s)
                .toBool());
    QVERIFY(!device.daemon.sandbox().connmanFiles().isEmpty());
    for (const QString &path : madeBelow(device.daemon.sandbox())) {
        QFile file(path);
        const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        QVERIFY2(!content.contains(secret.toUtf8()), qPrintable(path));
        QVERIFY2(!content.contains("some-identity"), qPrintable(path));
    }
    device.tolerateRefusedAutoConnect();
}

// By then the daemon has its keyboard, its LEDs, the bus and its settings open. (What it was itself started
// with has no name, but for /dev/null.)
void FilesTest::commandsInheritNoFile()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    device.commands().script("iw"_s, {"descriptors"_s});
    QVERIFY(device.client.call("setWifiRegion", "SE"_s).toBool());
    const QStringList recorded = device.commands().calls();
    QVERIFY(recorded.contains("iw reg set SE"_s));
    QCOMPARE(recorded.filter(QRegularExpression("^inherited /(dev/(?!null$)|sys/|etc/|var/)"_s)),
             QStringList());
}

static const Suite<FilesTest> filesTest;
#include "FilesTest.moc"
