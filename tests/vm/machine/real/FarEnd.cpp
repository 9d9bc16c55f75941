#include "FarEnd.h"

#include "Command.h"
#include "EventWait.h"
#include "Text.h"

#include <QFile>

using test_support::eventually;

bool FarEnd::runIn(const QString &space, const QString &program, const QStringList &arguments)
{
    return run("ip"_s, QStringList{"netns"_s, "exec"_s, space, program} + arguments);
}

bool FarEnd::killServer(const QString &pidFile)
{
    QFile file(pidFile);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QString pid = QString::fromLatin1(file.readAll()).trimmed();
    return run("kill"_s, {pid}) && eventually([&] { return !QFile::exists("/proc/"_s + pid); }) &&
           (QFile::remove(pidFile) || !QFile::exists(pidFile));
}
