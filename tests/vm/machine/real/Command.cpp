#include "Command.h"

#include <QDebug>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>

namespace {

constexpr int commandTimeoutMs = 300000;

/// Waits in an event loop, because the programs run here may call services that this process offers on the
/// bus.
bool finish(QProcess &process)
{
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &loop,
                     &QEventLoop::quit);
    QObject::connect(&process, &QProcess::errorOccurred, &loop, &QEventLoop::quit);
    QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    limit.start(commandTimeoutMs);
    if (process.state() != QProcess::NotRunning) {
        loop.exec();
    }
    return process.state() == QProcess::NotRunning && process.error() == QProcess::UnknownError &&
           process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

} // namespace

QString outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments, QIODevice::ReadOnly);
    return finish(process) ? QString::fromUtf8(process.readAllStandardOutput()) : QString();
}

bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments, QIODevice::ReadOnly);
    if (finish(process)) {
        return true;
    }
    qWarning().noquote() << program << arguments.join(QLatin1Char(' ')) << "failed:" << process.readAll();
    return false;
}
