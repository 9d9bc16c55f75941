// The daemon beside its floors, on private buses, in one run; prints the ratios as tables.

#include "ChildProcess.h"
#include "EventWait.h"
#include "Memory.h"
#include "MirrorBench.h"
#include "Table.h"
#include "TestDevice.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QVector>

#include <array>
#include <utility>

using namespace test_support;

namespace {

constexpr int StartRuns = 15;
constexpr int RoundTrips = 3000;
constexpr std::array<uint, 2> Homes{10, 100};
constexpr std::array<uint, 2> Crowds{1000, 5000};

const QString DaemonName = QStringLiteral("com.tactora.NetworkManager");
const QString FloorName = QStringLiteral("com.tactora.Floor");

const QString StartTarget = QStringLiteral("<= 1.15");
const QString OwnMemoryTarget = QStringLiteral("<= 1.2");
const QString RoundTripTarget = QStringLiteral("<= 1.05");

double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

QString busVariable(const PrivateBus &bus)
{
    return QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS=") + bus.address();
}

bool hasName(const QDBusConnection &bus, const QString &name)
{
    return bus.interface()->isServiceRegistered(name);
}

/// Any program, started in the daemon's own kind of sandbox, which has files for LEDs.
class SandboxedProgram
{
public:
    SandboxedProgram(QStringList environment, QStringList command)
        : m_environment(std::move(environment))
        , m_command(std::move(command))
    {
        m_process.setStandardErrorFile(QProcess::nullDevice());
    }

    /// Makes the sandbox, which costs more than a start: the shell in it waits to be replaced by the program.
    void prepare()
    {
        QStringList arguments = m_sandbox.namespaceArguments(m_environment);
        arguments << QStringLiteral("--bind") << m_sandbox.devices().root() + QStringLiteral("/sys")
                  << QStringLiteral("/sys");
        arguments << QStringLiteral("/bin/sh") << QStringLiteral("-c")
                  << QStringLiteral("echo ready; read -r go; exec \"$@\"") << QStringLiteral("sh")
                  << m_command;
        m_process.start(QStringLiteral("bwrap"), arguments);
        m_process.waitForReadyRead(-1);
    }
    void start()
    {
        m_process.write("\n");
        m_process.waitForBytesWritten(-1);
    }
    void stop() { stopProcess(m_process); }

private:
    QStringList m_environment;
    QStringList m_command;
    DaemonSandbox m_sandbox;
    ChildProcess m_process;
};

/// Starts a program and returns the milliseconds until it owns `name`; it is stopped again.
double startTime(const DaemonClient &client, const QString &name, SandboxedProgram &program)
{
    QDBusServiceWatcher watcher(name, client.connection(), QDBusServiceWatcher::WatchForOwnerChange);
    QElapsedTimer timer;
    double elapsed = 0;
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &watcher,
                     [&] { elapsed = milliseconds(timer); });
    program.prepare();
    timer.start();
    program.start();
    waitUntil([&] { return elapsed > 0; });
    program.stop();
    waitUntil([&] { return !hasName(client.connection(), name); });
    return elapsed;
}

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

void printMemory(const QDBusConnection &bus, const QString &what, const QString &figure,
                 const QString &target = {})
{
    printRow(what, QStringLiteral("KiB"), memoryKiB(ownerProcess(bus, FloorName), figure),
             memoryKiB(ownerProcess(bus, DaemonName), figure), target);
}

void benchStart()
{
    const PrivateBus bus;
    const DaemonClient client(bus.address());
    // Nothing fakes devices here, as that would cost the daemon more than devices do.
    const QStringList environment{busVariable(bus)};
    SandboxedProgram floor(environment, {QStringLiteral(FLOOR_PROGRAM)});
    SandboxedProgram daemon(environment, {QStringLiteral(DAEMON_PROGRAM), QStringLiteral("--device"),
                                          QStringLiteral("/dev/null")});
    QVector<double> floorTimes;
    QVector<double> daemonTimes;
    for (int run = 0; run < StartRuns; ++run) {
        floorTimes << startTime(client, FloorName, floor);
        daemonTimes << startTime(client, DaemonName, daemon);
    }
    printRow(QStringLiteral("start to bus name (median of %1)").arg(StartRuns), QStringLiteral("ms"),
             median(floorTimes), median(daemonTimes), StartTarget);
}

void benchService()
{
    TestDevice device;
    device.simulator.addService(QStringLiteral("ethernet_020304050607_cable"),
                                {{QStringLiteral("State"), QStringLiteral("online")}});
    device.startWithoutRadio();
    SandboxedProgram floor(device.daemon.sandbox().environment() << busVariable(device.bus),
                           {QStringLiteral(FLOOR_PROGRAM)});
    const QDBusConnection bus = device.client.connection();
    const QDBusServiceWatcher watcher(FloorName, bus, QDBusServiceWatcher::WatchForOwnerChange);
    floor.prepare();
    floor.start();
    waitUntil([&] { return hasName(bus, FloorName); });

    QVector<double> floorTimes;
    QVector<double> daemonTimes;
    for (int call = 0; call < RoundTrips; ++call) {
        floorTimes << roundTrip(bus, FloorName);
        daemonTimes << roundTrip(bus, DaemonName);
    }
    printMemory(bus, QStringLiteral("resident memory, one network"), QStringLiteral("Rss"));
    printMemory(bus, QStringLiteral("memory of its own (RssAnon)"), QStringLiteral("Anonymous"),
                OwnMemoryTarget);
    printRow(QStringLiteral("round trip of activeNetworks (median of %1)").arg(RoundTrips),
             QStringLiteral("us"), median(floorTimes), median(daemonTimes), RoundTripTarget);
    floor.stop();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "The daemon beside the least that could do the same; in an emulated 32-bit ARM machine: "
        "./dev bench --arch armhf"));
    const QCommandLineOption brief(QStringLiteral("brief"),
                                   QStringLiteral("Leave the homes of a thousand networks and more out."));
    parser.addOption(brief);
    parser.addHelpOption();
    parser.process(application);

    printHeader(QStringLiteral("minimal Qt D-Bus service"));
    benchStart();
    benchService();
    printHeader(QStringLiteral("bare Qt client, same calls"));
    for (const uint services : Homes) {
        benchMirror(services);
    }
    if (!parser.isSet(brief)) {
        for (const uint services : Crowds) {
            benchQuietMirror(services);
        }
    }
    return EXIT_SUCCESS;
}
