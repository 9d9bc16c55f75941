#include "Examination.h"

#include "Daemon.h"
#include "EventWait.h"
#include "Run.h"
#include "Text.h"

#include <QFile>
#include <QTextStream>

#include <csignal>

namespace soak {

namespace {
constexpr int shownLines = 10;
/// The daemon looks at new states two seconds after they came. Nothing shows that it has.
constexpr int settleTimeMs = 3000;

/// What Qt says of values that it unpacks before the daemon sees them.
const QStringList unavoidable{"default|warning|QDBusSignature: invalid signature \"\""_s};

bool isOwnComplaint(const QString &line)
{
    const QString category = line.section(QLatin1Char('|'), 0, 0);
    const QString type = line.section(QLatin1Char('|'), 1, 1);
    return (type == QLatin1String("critical") && !category.startsWith(QLatin1String("qt."))) ||
           unavoidable.contains(line);
}

void show(const QStringList &lines)
{
    QTextStream err(stderr);
    for (const QString &line : lines.mid(0, shownLines)) {
        err << "unexpected: " << line.left(1000) << '\n';
    }
}
} // namespace

qint64 settledMemoryKiB(const test_support::Daemon &daemon)
{
    test_support::waitUntil([&daemon] { return !daemon.isRunning(); }, settleTimeMs);
    QFile status("/proc/%1/status"_s.arg(daemon.processId()));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QString text = QString::fromLatin1(status.readAll());
    return text.section("RssAnon:"_s, 1).section("kB"_s, 0, 0).trimmed().toLongLong();
}

void examineEnd(Run &run, test_support::Daemon &daemon)
{
    const bool isAlive = daemon.isRunning();
    const int status = isAlive ? (daemon.sendSignal(SIGTERM), daemon.waitForExit()) : daemon.waitForExit();
    run.check("runs to the end, status"_s,
              (isAlive ? QString() : "ended early, "_s) + QString::number(status), "0"_s,
              isAlive && status == 0);
    if (daemon.isRunning()) {
        daemon.sendSignal(SIGKILL);
        daemon.waitForExit();
    }
    run.checkEqual("unexpected log lines"_s, unexpectedLines(daemon), 0);
}

int unexpectedLines(test_support::Daemon &daemon)
{
    QStringList unexpected;
    for (const QString &line : daemon.log().takeProblems()) {
        if (!isOwnComplaint(line)) {
            unexpected << line;
        }
    }
    show(unexpected);
    return unexpected.size();
}

} // namespace soak
