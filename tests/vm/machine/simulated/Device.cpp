#include "Device.h"

#include "Bench.h"
#include "Connman.h"
#include "DevicePeers.h"
#include "Text.h"

#include <QDir>

namespace {

const QString connmanDirectory = "/var/lib/connman"_s;
const QString settingsDirectory = "/etc/xdg/Tactora AB"_s;

} // namespace

bool Device::reset()
{
    Bench &bench = Bench::instance();
    QDir(file(connmanDirectory)).removeRecursively();
    QDir(file(settingsDirectory)).removeRecursively();
    bench.simulator.eraseConnman();
    return QDir().mkpath(file(connmanDirectory)) &&
           bench.run("ip"_s, {"link"_s, "set"_s, "dev"_s, "wlan0"_s, "address"_s, "02:00:00:00:00:00"_s});
}

QString Device::file(const QString &path)
{
    return Bench::instance().daemon.sandbox().hostPath(path);
}

bool Connman::hasStored(const QString &identifier, const QString &passphrase)
{
    return Bench::instance().simulator.storedPassphrase(identifier) == passphrase;
}

bool DevicePeers::appear()
{
    QObject::connect(&Bench::instance().simulator, &test_support::SimulatorClient::spoke, this,
                     [this](const QString & /*id*/, const QVariantMap &request) { remember(request); });
    return true; // they are on the bus as long as the simulated device is
}
