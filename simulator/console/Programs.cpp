#include "Programs.h"

#include "Interrupts.h"
#include <array>
#include <cstdio>
#include <QCoreApplication>
#include <QEventLoop>
#include <QProcess>
#include <QSocketNotifier>
#include <unistd.h>

namespace {

constexpr int commandNotFound = 127; // as shells have it

QProcessEnvironment shellEnvironment(const QString &busAddress)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), busAddress);
    environment.insert(QStringLiteral("PATH"), QCoreApplication::applicationDirPath() + QLatin1Char(':') +
                                                   environment.value(QStringLiteral("PATH")));
    return environment;
}

} // namespace

int runShell(const QString &busAddress)
{
    QProcess shell;
    shell.setProcessEnvironment(shellEnvironment(busAddress));
    shell.setProcessChannelMode(QProcess::ForwardedChannels);
    shell.setInputChannelMode(QProcess::ForwardedInputChannel);
    QEventLoop loop;
    QObject::connect(&shell, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &loop,
                     &QEventLoop::quit);
    shell.start(qEnvironmentVariable("SHELL", QStringLiteral("/bin/bash")), QStringList());
    if (!shell.waitForStarted()) {
        std::fprintf(stderr, "%s: %s\n", qUtf8Printable(shell.program()),
                     qUtf8Printable(shell.errorString()));
        return commandNotFound;
    }
    loop.exec();
    return shell.exitCode();
}

void offerBus(const QString &busAddress, const Interrupts &interrupts)
{
    std::puts(busAddress.toLocal8Bit().constData());
    std::fflush(stdout);
    QEventLoop loop;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &loop, [&loop] {
        std::array<char, 512> ignored{};
        if (read(STDIN_FILENO, ignored.data(), ignored.size()) <= 0) {
            loop.quit();
        }
    });
    QObject::connect(&interrupts, &Interrupts::interrupted, &loop, &QEventLoop::quit);
    loop.exec();
}
