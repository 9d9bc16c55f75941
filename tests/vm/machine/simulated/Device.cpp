#include "Device.h"

#include "Bench.h"
#include "Connman.h"
#include "Peers.h"
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

test_support::LedPattern Device::led(const QString &name)
{
    return Bench::instance().devices().led(name);
}

bool Connman::hasStored(const QString &identifier, const QString &passphrase)
{
    return Bench::instance().simulator.storedPassphrase(identifier) == passphrase;
}

std::unique_ptr<QObject> Peers::appear(test_support::SpeechRecord &record)
{
    // They are on the bus as long as the simulated device is.
    auto listener = std::make_unique<QObject>();
    QObject::connect(&Bench::instance().simulator, &test_support::SimulatorClient::spoke, listener.get(),
                     [&record](const QString & /*id*/, const QVariantMap &request) { record.add(request); });
    return listener;
}
