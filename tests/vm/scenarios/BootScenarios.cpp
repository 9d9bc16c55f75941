#include "BootScenarios.h"

#include "Command.h"
#include "Eventually.h"
#include "Explanations.h"
#include "Scenarios.h"
#include "Systemd.h"

#include <QFile>
#include <QTest>

namespace {

const QString daemonUnit = QStringLiteral("network-manager.service");
const QString hostName = QStringLiteral("printer-7");

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Has the machine, once it is off, started again.
bool askForAnotherBoot()
{
    return QFile(QStringLiteral("/run/results/again")).open(QIODevice::WriteOnly);
}

double secondsUntil(const QString &stage)
{
    return Systemd::property(daemonUnit, stage).toDouble() / 1e6;
}

QStringList criticalLines()
{
    return Systemd::journal(daemonUnit, 0, QStringLiteral("emerg..err"))
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

BootScenarios::BootScenarios(int boot, int cuts)
    : m_boot(boot)
    , m_cuts(cuts)
{
}

bool BootScenarios::prepareWorld()
{
    return m_world.powerOn() && m_world.begin();
}

bool BootScenarios::registerForLater()
{
    const QString identifier = m_world.connman().find(QStringLiteral("Atelier"), QStringLiteral("psk"));
    return m_world.daemon().call(QStringLiteral("registerWifi"), {identifier, Secret::atelier}).toBool() &&
           m_world.daemon().call(QStringLiteral("setHostName"), {hostName}).toBool();
}

/// ConnMan stores a network under an identifier with the card's address in it: after power-on that is the
/// card's own again, until the daemon changes it.
void BootScenarios::registeredNetworkIsJoinedAgainAfterAReboot()
{
    if (m_boot == 1) {
        QVERIFY(prepareWorld());
        QVERIFY(registerForLater());
        QVERIFY(askForAnotherBoot());
        return;
    }
    QCOMPARE(outputOf(QStringLiteral("systemctl"), {QStringLiteral("is-system-running")}).trimmed(),
             QStringLiteral("running"));
    qInfo("power-on to the bus name %.1f s, of them %.1f s of the daemon's own",
          secondsUntil(QStringLiteral("ActiveEnterTimestampMonotonic")),
          secondsUntil(QStringLiteral("ActiveEnterTimestampMonotonic")) -
              secondsUntil(QStringLiteral("ExecMainStartTimestampMonotonic")));
    QVERIFY(eventually([] { return Kernel::joinedNetwork() == QStringLiteral("Atelier"); }));
    QVERIFY(eventually([] { return ledState(QStringLiteral("led8")) == QStringLiteral("on"); }));
    QCOMPARE(contentOf(QStringLiteral("/proc/sys/kernel/hostname")).trimmed(), hostName);
    QCOMPARE(unexplained(criticalLines()), QStringList());
}

/// Everything else on the bus ends with it, these scenarios' own process too, if it were there.
void BootScenarios::lostBusBringsTheDaemonBack()
{
    const auto process = [] { return Systemd::property(daemonUnit, QStringLiteral("MainPID")); };
    const QString before = process();

    QVERIFY(Systemd::control(
        {QStringLiteral("kill"), QStringLiteral("--signal=KILL"), QStringLiteral("dbus.service")}));

    QVERIFY(eventually([&] { return process() != before && process() != QStringLiteral("0"); }));
    QVERIFY(eventually([] {
        return !outputOf(QStringLiteral("busctl"),
                         {QStringLiteral("call"), QStringLiteral("com.tactora.NetworkManager"),
                          QStringLiteral("/"), QStringLiteral("com.tactora.NetworkManager"),
                          QStringLiteral("getHostName")})
                    .isEmpty();
    }));
    QVERIFY(criticalLines().contains(QStringLiteral("default: Connection to system-bus lost.")));
}
