// The daemon beside its floors, on private buses, in one run; prints the ratios as tables.

#include "ChildProcess.h"
#include "EventWait.h"
#include "MirrorBench.h"
#include "Table.h"
#include "TestDevice.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QFile>
#include <QVector>

#include <array>
#include <csignal>
#include <functional>
#include <unistd.h>
#include <utility>

using namespace test_support;

namespace {

constexpr int StartRuns = 15;
constexpr int RoundTrips = 3000;
constexpr std::array<uint, 2> Homes{10, 100};
constexpr std::array<uint, 2> Crowds{1000, 5000};

const QString DaemonName = QStringLiteral("com.tactora.NetworkManager");
const QString FloorName = QStringLiteral("com.tactora.Floor");

double residentMiB(qint64 processId)
{
    QFile statm(QStringLiteral("/proc/%1/statm").arg(processId));
    if (!statm.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const double pages = statm.readAll().split(' ').value(1).toDouble();
    return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024 * 1024);
}

bool hasName(const QDBusConnection &bus, const QString &name)
{
    return bus.interface()->isServiceRegistered(name);
}

/// Starts a program and returns the milliseconds until it owns `name`; it is stopped again.
double startTime(DaemonClient &client, const QString &name, const std::function<void()> &start,
                 const std::function<void()> &stop)
{
    QDBusServiceWatcher watcher(name, client.connection(), QDBusServiceWatcher::WatchForOwnerChange);
    QElapsedTimer timer;
    timer.start();
    start();
    waitUntil([&] { return hasName(client.connection(), name); });
    const double elapsed = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    stop();
    waitUntil([&] { return !hasName(client.connection(), name); });
    return elapsed;
}

/// Any program, started in the daemon's own kind of sandbox, so that both pay the same for it.
class SandboxedProgram
{
public:
    SandboxedProgram(QString busAddress, QString program)
        : m_busAddress(std::move(busAddress))
        , m_program(std::move(program))
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }

    void start()
    {
        QStringList environment = m_sandbox.environment();
        environment << QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS=") + m_busAddress;
        m_process.start(QStringLiteral("bwrap"), m_sandbox.namespaceArguments(environment) << m_program);
    }
    void stop() { stopProcess(m_process); }

private:
    QString m_busAddress;
    QString m_program;
    DaemonSandbox m_sandbox;
    ChildProcess m_process;
};

qint64 ownerProcess(const QDBusConnection &bus, const QString &name)
{
    return static_cast<qint64>(bus.interface()->servicePid(name).value());
}

double roundTrip(const QDBusConnection &bus, const QString &name)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(name, QStringLiteral("/"), DaemonName,
                                                             QStringLiteral("activeNetworks"));
    QElapsedTimer timer;
    timer.start();
    bus.call(call);
    return static_cast<double>(timer.nsecsElapsed()) / 1000;
}

void benchStart()
{
    const PrivateBus bus;
    DaemonClient client(bus.address());
    SandboxedProgram floor(bus.address(), QStringLiteral(FLOOR_PROGRAM));
    SandboxedProgram daemon(bus.address(), QStringLiteral(DAEMON_PROGRAM));
    QVector<double> floorTimes;
    QVector<double> daemonTimes;
    for (int run = 0; run < StartRuns; ++run) {
        floorTimes << startTime(
            client, FloorName, [&] { floor.start(); }, [&] { floor.stop(); });
        daemonTimes << startTime(
            client, DaemonName, [&] { daemon.start(); }, [&] { daemon.stop(); });
    }
    printRow(QStringLiteral("start to bus name, sandbox included (median of %1)").arg(StartRuns),
             QStringLiteral("ms"), median(floorTimes), median(daemonTimes));
}

void benchService()
{
    TestDevice device;
    device.simulator.addService(QStringLiteral("ethernet_020304050607_cable"),
                                {{QStringLiteral("State"), QStringLiteral("online")}});
    device.startWithoutRadio();
    SandboxedProgram floor(device.bus.address(), QStringLiteral(FLOOR_PROGRAM));
    const QDBusConnection bus = device.client.connection();
    floor.start();
    waitUntil([&] { return hasName(bus, FloorName); });

    QVector<double> floorTimes;
    QVector<double> daemonTimes;
    for (int call = 0; call < RoundTrips; ++call) {
        floorTimes << roundTrip(bus, FloorName);
        daemonTimes << roundTrip(bus, DaemonName);
    }
    printRow(QStringLiteral("resident memory, one network"), QStringLiteral("MiB"),
             residentMiB(ownerProcess(bus, FloorName)), residentMiB(ownerProcess(bus, DaemonName)));
    printRow(QStringLiteral("round trip of activeNetworks (median of %1)").arg(RoundTrips),
             QStringLiteral("us"), median(floorTimes), median(daemonTimes));
    floor.stop();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    printHeader(QStringLiteral("minimal Qt D-Bus service"));
    benchStart();
    benchService();
    printHeader(QStringLiteral("bare Qt client, same calls"));
    for (const uint services : Homes) {
        benchMirror(services);
    }
    for (const uint services : Crowds) {
        benchQuietMirror(services);
    }
    return EXIT_SUCCESS;
}
