#include "Device.h"

#include "Bench.h"
#include "Connman.h"
#include "DevicePeers.h"

#include <QDir>

namespace {

const QString connmanDirectory = QStringLiteral("/var/lib/connman");
const QString settingsDirectory = QStringLiteral("/etc/xdg/Tactora AB");

} // namespace

bool Device::reset()
{
    Bench &bench = Bench::instance();
    QDir(file(connmanDirectory)).removeRecursively();
    QDir(file(settingsDirectory)).removeRecursively();
    bench.simulator.eraseConnman();
    return QDir().mkpath(file(connmanDirectory)) &&
           bench.run(QStringLiteral("ip"), {QStringLiteral("link"), QStringLiteral("set"),
                                            QStringLiteral("dev"), QStringLiteral("wlan0"),
                                            QStringLiteral("address"), QStringLiteral("02:00:00:00:00:00")});
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
