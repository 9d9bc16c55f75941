#include "Device.h"

#include "Command.h"
#include "Connman.h"
#include "Text.h"

#include <QFile>

namespace {

const QString connmanDirectory = "/var/lib/connman"_s;
const QString settingsDirectory = "/etc/xdg/Tactora AB"_s;

/// Directories that the units' own views of the file system begin at stay.
bool empty(const QString &directory)
{
    return run("find"_s, {directory, "-mindepth"_s, "1"_s, "-delete"_s});
}

/// The card has its own address again and is down, as after power-on; the daemon gave it another one.
bool powerOnCard()
{
    const auto link = [](const QStringList &what) {
        return run("ip"_s, QStringList{"link"_s, "set"_s, "dev"_s, "wlan0"_s} + what);
    };
    return link({"down"_s}) && link({"address"_s, "02:00:00:00:00:00"_s});
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

test_support::LedPattern Device::led(const QString &name)
{
    return test_support::LedPattern::shownBy("/sys/class/leds/"_s + name);
}

bool Connman::hasStored(const QString &identifier, const QString &passphrase)
{
    QFile file("%1/%2/settings"_s.arg(connmanDirectory, identifier));
    return file.open(QIODevice::ReadOnly) && file.readAll().contains(passphrase.toUtf8());
}
