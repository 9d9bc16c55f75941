#include "MirrorBench.h"

#include "ChildProcess.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"
#include "Table.h"

using namespace test_support;

namespace {

constexpr int Runs = 3;
constexpr int Changes = 1000;

const QString TimeTarget = QStringLiteral("<= 1.3");
const QString MemoryTarget = QStringLiteral("<= 10 KiB");

/// All runs of one program.
struct Costs
{
    QVector<double> milliseconds;
    QVector<double> cpu;
    QVector<double> kib;
    QVector<double> cpuUntilQuiet;
    QVector<double> cpuOfChanges;
};

QByteArray nextLine(QProcess &program)
{
    while (!program.canReadLine() && program.waitForReadyRead(-1)) {
    }
    return program.readLine().trimmed();
}

/// Takes each of the first services to the other of two states that no interface's state follows from.
void changeStates(SimulatorClient &simulator)
{
    const QStringList identifiers = simulator.services().mid(0, Changes);
    for (const QString &identifier : identifiers) {
        const QString now = simulator.serviceProperties(identifier).value(QStringLiteral("State")).toString();
        const QString idle = QStringLiteral("idle");
        simulator.setServiceProperty(identifier, QStringLiteral("State"),
                                     now == idle ? QStringLiteral("disconnect") : idle);
    }
}

void runOnce(const QString &who, uint services, SimulatorClient *changing, Costs &costs)
{
    QStringList arguments{who, QString::number(services)};
    if (changing != nullptr) {
        arguments << QStringLiteral("settle");
    }
    ChildProcess program;
    program.start(QStringLiteral(MIRROR_PROGRAM), arguments);
    const QByteArrayList numbers = nextLine(program).split(' ');
    costs.milliseconds << numbers.value(0).toDouble() / 1000;
    costs.cpu << numbers.value(1).toDouble();
    costs.kib << numbers.value(2).toDouble() / services;
    if (changing != nullptr) {
        costs.cpuUntilQuiet << nextLine(program).toDouble();
        changeStates(*changing);
        program.write("\n");
        costs.cpuOfChanges << nextLine(program).toDouble();
    }
    program.waitForFinished(-1);
}

void bench(uint services, bool untilQuiet)
{
    const PrivateBus bus;
    SimulatorClient simulator(bus.address());
    simulator.addServices(0, services);
    SimulatorClient *const changing = untilQuiet ? &simulator : nullptr;
    Costs bare;
    Costs daemon;
    for (int run = 0; run < Runs; ++run) {
        runOnce(QStringLiteral("bare"), services, changing, bare);
        runOnce(QStringLiteral("daemon"), services, changing, daemon);
        simulator.clearCalls();
    }
    const QString what = QStringLiteral("mirror of %1 services, %2").arg(services);
    printRow(what.arg(QStringLiteral("time to the last answer")), QStringLiteral("ms"),
             median(bare.milliseconds), median(daemon.milliseconds), untilQuiet ? TimeTarget : QString());
    printRow(what.arg(QStringLiteral("processor time till then")), QStringLiteral("ms"), median(bare.cpu),
             median(daemon.cpu), untilQuiet ? TimeTarget : QString());
    printRow(what.arg(QStringLiteral("memory per service")), QStringLiteral("KiB"), median(bare.kib),
             median(daemon.kib), untilQuiet ? MemoryTarget : QString());
    if (untilQuiet) {
        printRow(what.arg(QStringLiteral("processor time until quiet")), QStringLiteral("ms"),
                 median(bare.cpuUntilQuiet), median(daemon.cpuUntilQuiet), TimeTarget);
        printRow(QStringLiteral("%1 changes of state among %2 services, processor time")
                     .arg(Changes)
                     .arg(services),
                 QStringLiteral("ms"), median(bare.cpuOfChanges), median(daemon.cpuOfChanges), TimeTarget);
    }
}

} // namespace

void benchMirror(uint services)
{
    bench(services, false);
}

void benchQuietMirror(uint services)
{
    bench(services, true);
}
