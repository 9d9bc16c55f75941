#include "BootScenarios.h"

#include "BusCall.h"
#include "Command.h"
#include "Device.h"
#include "EventWait.h"
#include "Explanations.h"
#include "Kernel.h"
#include "Scenarios.h"
#include "Systemd.h"
#include "Text.h"

#include <QFile>
#include <QTest>

using test_support::eventually;
using test_support::LedPattern;

namespace {

const QString hostName = "printer-7"_s;

/// Has the machine, once it is off, started again.
bool askForAnotherBoot()
{
    return QFile("/run/results/again"_s).open(QIODevice::WriteOnly);
}

double secondsUntil(const QString &stage)
{
    return Systemd::property(daemonUnit, stage).toDouble() / 1e6;
}

QStringList criticalLines()
{
    return Systemd::journal(daemonUnit, 0, "emerg..err"_s).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

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
    const QString identifier = m_world.connman().find("Atelier"_s, "psk"_s);
    return m_world.client().call("registerWifi", identifier, Secret::atelier).toBool() &&
           m_world.client().call("setHostName", hostName).toBool();
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
    QCOMPARE(outputOf("systemctl"_s, {"is-system-running"_s}).trimmed(), "running"_s);
    qInfo("power-on to the bus name %.1f s, of them %.1f s of the daemon's own",
          secondsUntil("ActiveEnterTimestampMonotonic"_s),
          secondsUntil("ActiveEnterTimestampMonotonic"_s) -
              secondsUntil("ExecMainStartTimestampMonotonic"_s));
    QVERIFY(eventually([] { return Kernel::joinedNetwork() == "Atelier"_s; }));
    QVERIFY(eventually([] { return Device::led("led8"_s) == LedPattern::on(); }));
    QCOMPARE(contentOf("/proc/sys/kernel/hostname"_s).trimmed(), hostName);
    QCOMPARE(unexplained(criticalLines()), QStringList());
}

/// Everything else on the bus ends with it, these scenarios' own process too, if it were there.
void BootScenarios::lostBusBringsTheDaemonBack()
{
    const auto process = [] { return Systemd::property(daemonUnit, "MainPID"_s); };
    const QString before = process();

    QVERIFY(Systemd::control({"kill"_s, "--signal=KILL"_s, "dbus.service"_s}));

    QVERIFY(eventually([&] { return process() != before && process() != "0"_s; }));
    QVERIFY(eventually([] {
        return !outputOf("busctl"_s, {"call"_s, daemonName, "/"_s, daemonName, "getHostName"_s}).isEmpty();
    }));
    QVERIFY(criticalLines().contains("default: Connection to system-bus lost."_s));
}
