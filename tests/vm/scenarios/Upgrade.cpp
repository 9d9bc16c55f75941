#include "Command.h"
#include "EventWait.h"
#include "MachineScenarios.h"
#include "Systemd.h"
#include "Text.h"

#include <QFile>
#include <QTest>

using test_support::eventually;

namespace {

const QString package = "/run/machine/package.deb"_s;
const QString older = "/run/vm/older.deb"_s;

/// The package once more, as a version that came before it.
bool packOlder()
{
    const QString script =
        "rm -rf /run/vm/older && dpkg-deb --raw-extract %1 /run/vm/older && "
        "sed -i 's/^Version: /&0~/' /run/vm/older/DEBIAN/control && "
        "dpkg-deb --build --root-owner-group -Znone /run/vm/older %2"_s.arg(package, older);
    return run("sh"_s, {"-c"_s, script});
}

QString installedVersion()
{
    return outputOf("dpkg-query"_s, {"--show"_s, "-f=${Version}"_s, "tactora-network-manager"_s});
}

bool install(const QString &file)
{
    return run("dpkg"_s, {"--install"_s, file});
}

} // namespace

void MachineScenarios::upgradeWhileJoinedKeepsEverything()
{
    m_world.spoil();
    QVERIFY(packOlder());
    daemon().markLog();
    QVERIFY(install(older));
    QVERIFY(installedVersion().startsWith("0~"_s));
    QVERIFY(m_world.waitUntilStarted(1));
    QVERIFY(eventually([&] { return client().call("getWifiPower").toBool(); }));
    const QString office = network("Office"_s, "ieee8021x"_s);
    QVERIFY(does("registerWiFiWpa2Enterprise", Secret::officeUser, office, Secret::officePassword, "peap"_s,
                 "MSCHAPV2"_s));
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    QVERIFY(QFile::exists(provisioningFile(office)));
    QVERIFY(does("setHostName", "before"_s));
    QVERIFY(does("setLockRegion", true));
    const QString region = client().call("getWifiRegion").toString();
    client().clearRecord();

    QVERIFY(install(package));

    QVERIFY(!installedVersion().startsWith("0~"_s));
    QVERIFY(isRejoined(identifier));
    QCOMPARE(World::preferredNetwork(), "Atelier"_s);
    QCOMPARE(client().call("getHostName").toString(), "before"_s);
    QCOMPARE(client().call("getWifiRegion").toString(), region);
    QVERIFY(does("getLockRegion"));
    QVERIFY(QFile::exists(provisioningFile(office)));
}
