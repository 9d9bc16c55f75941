#include "Command.h"
#include "Eventually.h"
#include "MachineScenarios.h"
#include "Systemd.h"

#include <QFile>
#include <QTest>

namespace {

const QString package = QStringLiteral("/run/machine/package.deb");
const QString older = QStringLiteral("/run/vm/older.deb");

/// The package once more, as a version that came before it.
bool packOlder()
{
    const QString script =
        QStringLiteral("rm -rf /run/vm/older && dpkg-deb --raw-extract %1 /run/vm/older && "
                       "sed -i 's/^Version: /&0~/' /run/vm/older/DEBIAN/control && "
                       "dpkg-deb --build --root-owner-group -Znone /run/vm/older %2")
            .arg(package, older);
    return run(QStringLiteral("sh"), {QStringLiteral("-c"), script});
}

QString installedVersion()
{
    return outputOf(QStringLiteral("dpkg-query"), {QStringLiteral("--show"), QStringLiteral("-f=${Version}"),
                                                   QStringLiteral("tactora-network-manager")});
}

bool install(const QString &file)
{
    return run(QStringLiteral("dpkg"), {QStringLiteral("--install"), file});
}

} // namespace

void MachineScenarios::upgradeWhileJoinedKeepsEverything()
{
    m_world.spoil();
    QVERIFY(packOlder());
    daemon().markLog();
    QVERIFY(install(older));
    QVERIFY(installedVersion().startsWith(QStringLiteral("0~")));
    QVERIFY(m_world.waitUntilStarted(1));
    QVERIFY(eventually([&] { return daemon().call(QStringLiteral("getWifiPower")).toBool(); }));
    const QString office = network(QStringLiteral("Office"), QStringLiteral("ieee8021x"));
    QVERIFY(does(QStringLiteral("registerWiFiWpa2Enterprise"),
                 {Secret::officeUser, office, Secret::officePassword, QStringLiteral("peap"),
                  QStringLiteral("MSCHAPV2")}));
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    QVERIFY(QFile::exists(provisioningFile(office)));
    QVERIFY(does(QStringLiteral("setHostName"), {QStringLiteral("before")}));
    QVERIFY(does(QStringLiteral("setLockRegion"), {true}));
    const QString region = daemon().call(QStringLiteral("getWifiRegion")).toString();
    daemon().forgetSignals();

    QVERIFY(install(package));

    QVERIFY(!installedVersion().startsWith(QStringLiteral("0~")));
    QVERIFY(isRejoined(identifier));
    QCOMPARE(World::preferredNetwork(), QStringLiteral("Atelier"));
    QCOMPARE(daemon().call(QStringLiteral("getHostName")).toString(), QStringLiteral("before"));
    QCOMPARE(daemon().call(QStringLiteral("getWifiRegion")).toString(), region);
    QVERIFY(does(QStringLiteral("getLockRegion")));
    QVERIFY(QFile::exists(provisioningFile(office)));
}
