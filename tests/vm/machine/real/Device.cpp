#include "Device.h"

#include "Command.h"
#include "Connman.h"

#include <QFile>

namespace {

const QString connmanDirectory = QStringLiteral("/var/lib/connman");
const QString settingsDirectory = QStringLiteral("/etc/xdg/Tactora AB");

/// Directories that the units' own views of the file system begin at stay.
bool empty(const QString &directory)
{
    return run(QStringLiteral("find"),
               {directory, QStringLiteral("-mindepth"), QStringLiteral("1"), QStringLiteral("-delete")});
}

/// The card has its own address again and is down, as after power-on; the daemon gave it another one.
bool powerOnCard()
{
    const auto link = [](const QStringList &what) {
        return run(QStringLiteral("ip"), QStringList{QStringLiteral("link"), QStringLiteral("set"),
                                                     QStringLiteral("dev"), QStringLiteral("wlan0")} +
                                             what);
    };
    return link({QStringLiteral("down")}) &&
           link({QStringLiteral("address"), QStringLiteral("02:00:00:00:00:00")});
}

} // namespace

bool Device::reset()
{
    return empty(connmanDirectory) && empty(settingsDirectory) && powerOnCard();
}

QString Device::file(const QString &path)
{
    return path;
}

bool Connman::hasStored(const QString &identifier, const QString &passphrase)
{
    QFile file(QStringLiteral("%1/%2/settings").arg(connmanDirectory, identifier));
    return file.open(QIODevice::ReadOnly) && file.readAll().contains(passphrase.toUtf8());
}
