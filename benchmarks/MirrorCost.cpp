// What it costs to mirror ConnMan's services: the daemon's ConnmanManager, or a bare Qt client that does the
// same.
//
//     bench-mirror bare|daemon COUNT [settle]
//
// mirrors COUNT services and prints "<microseconds to the last answer> <CPU milliseconds till then> <KiB of
// its own>". With "settle" it goes on: it prints the CPU milliseconds until it was quiet, waits for a line on
// its input while the services change, and prints the CPU milliseconds that the changes took.

#include "BareClient.h"
#include "ConnmanManager.h"
#include "ConnmanNames.h"
#include "ConnmanTypes.h"
#include "Memory.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QTextStream>
#include <QTimer>

#include <functional>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

/// The manager looks at new states two seconds after they came; by then it has.
constexpr int SettleMs = 3000;

double ownKiB()
{
    return memoryKiB(getpid(), QStringLiteral("Anonymous"));
}

double milliseconds(const timeval &time)
{
    return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
}

double cpuMilliseconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

/// All threads to come on one processor, so that the two programs are measured alike.
void pinToOneProcessor()
{
    cpu_set_t processors;
    CPU_ZERO(&processors);
    CPU_SET(0, &processors);
    sched_setaffinity(0, sizeof processors, &processors);
}

void settle()
{
    QEventLoop loop;
    QTimer::singleShot(SettleMs, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void runUntilInput()
{
    QEventLoop loop;
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &loop, &QEventLoop::quit);
    loop.exec();
}

void measure(const std::function<void()> &mirror, bool settles)
{
    QTextStream out(stdout);
    const double before = ownKiB();
    const double cpuAtStart = cpuMilliseconds();
    QElapsedTimer timer;
    timer.start();
    mirror();
    const qint64 elapsed = timer.nsecsElapsed() / 1000;
    const double cpuToLastAnswer = cpuMilliseconds() - cpuAtStart;
    out << elapsed << ' ' << cpuToLastAnswer << ' ' << ownKiB() - before << Qt::endl;
    if (!settles) {
        return;
    }
    settle();
    const double cpuWhenQuiet = cpuMilliseconds();
    out << cpuWhenQuiet - cpuAtStart << Qt::endl;
    runUntilInput();
    settle();
    out << cpuMilliseconds() - cpuWhenQuiet << Qt::endl;
}

} // namespace

int main(int argc, char *argv[])
{
    pinToOneProcessor();
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int count = arguments.value(2).toInt();
    const bool settles = arguments.contains(QLatin1String("settle"));
    registerConnmanTypes();
    // As in the daemon: without one, every subscription would ask the bus for the name's owner.
    const QDBusServiceWatcher watcher(ConnmanNames::Service, QDBusConnection::systemBus());

    if (arguments.contains(QLatin1String("bare"))) {
        BareClient client;
        measure([&client] { client.mirror(); }, settles);
    } else {
        ConnmanManager manager(QDBusConnection::systemBus(), nullptr);
        // It fills itself on the first pass of the event loop.
        const auto mirror = [&manager, count] {
            while (manager.services().size() < count) {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            }
        };
        measure(mirror, settles);
    }
    return EXIT_SUCCESS;
}
