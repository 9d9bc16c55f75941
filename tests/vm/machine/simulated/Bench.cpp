#include "Bench.h"

#include "AccessPoints.h"
#include "Peers.h"
#include "Text.h"

#include <QProcess>
#include <QRegularExpression>

namespace {

Bench *theBench = nullptr;

} // namespace

Bench::Bench()
{
    theBench = this;
    // Switches Wi-Fi for the key chord: the program itself, on the simulated ConnMan.
    commands().useOwn("connmanctl"_s);
    // Long enough for scenarios to see what the daemon shows meanwhile.
    simulator.setTiming("wrongPassphrase"_s, 1500);
    simulator.setTiming("linkLocal"_s, 3000);
    // In the test machine, too, nothing answers ConnMan's online check.
    simulator.setTiming("online"_s, -1);
    simulator.setSerialNumber(Peers::serialNumber);
    simulator.stopConnman();
    simulator.setConnmanDirectory(daemon.sandbox().hostPath("/var/lib/connman"_s));
    for (const QVariantMap &options : accessPoints()) {
        simulator.addNetwork(options);
    }
}

Bench::~Bench()
{
    theBench = nullptr;
}

Bench &Bench::instance()
{
    Q_ASSERT(theBench != nullptr);
    return *theBench;
}

bool Bench::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setEnvironment(commands().environment());
    process.start(commands().path() + QLatin1Char('/') + program, arguments);
    return process.waitForFinished() && process.exitCode() == 0;
}

QString Bench::latest(const QString &command)
{
    const QStringList lines = commands().calls().filter(QRegularExpression(QLatin1Char('^') + command));
    return lines.isEmpty() ? QString() : lines.constLast().section(QLatin1Char(' '), -1);
}
