#include "World.h"

#include "BusCall.h"
#include "Device.h"
#include "EventWait.h"
#include "Kernel.h"
#include "Peers.h"
#include "Text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

using test_support::eventually;
using test_support::LedPattern;

namespace {

/// A region without any channel above 2.4 GHz, so that a scan takes half a second instead of ten.
const QByteArray regionStore = "[wifi]\nregion=YE\n";
/// On a very busy machine the command does not end in time.
const QString regionIsSet = "The region has been set successfully."_s;
const QString regionIsNotSet = "Failed to set the region."_s;
constexpr int startLimitMs = 120000;

QString settingsFile(const QString &name)
{
    return Device::file("/etc/xdg/Tactora AB/"_s + name);
}

QString systemBus()
{
    return qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/run/dbus/system_bus_socket"_s);
}

bool storeRegion()
{
    QFile file(settingsFile("region.conf"_s));
    return QFileInfo(file).dir().mkpath("."_s) && file.open(QIODevice::WriteOnly) &&
           file.write(regionStore) == regionStore.size();
}

} // namespace

bool World::powerOn()
{
    m_peers = Peers::appear(m_speech);
    if (!m_keyboard.plugIn()) {
        return false;
    }
    m_daemon = makeDaemon(m_keyboard.device());
    m_client = std::make_unique<test_support::DaemonClient>(systemBus());
    return true;
}

bool World::startDaemon()
{
    return m_daemon->start() && m_client->waitForName(startLimitMs);
}

bool World::stopDaemon()
{
    return m_daemon->stop() && eventually([] { return !isOnBus(daemonName); });
}

void World::forgetTheStory()
{
    m_client->clearRecord();
    m_speech.clear();
    m_daemon->markLog();
    m_connman.markLog();
}

bool World::begin()
{
    if (!m_lan.unplug() || !m_air.restore()) {
        return false;
    }
    const bool reusable = !m_spoilt && m_connman.isRunning() && m_daemon->isRunning() && forgetNetworks();
    if (!reusable && !(beginUnused() && startBoth())) {
        return false;
    }
    m_spoilt = false;
    return settle();
}

bool World::beginUnused()
{
    m_spoilt = true;
    const bool stopped = stopDaemon() && m_connman.stopAndWait();
    forgetTheStory();
    return stopped && m_lan.unplug() && m_air.restore() && Device::reset();
}

bool World::restartConnman()
{
    if (!m_connman.stopAndWait()) {
        return false;
    }
    m_daemon->markLog();
    return m_connman.startAndWait() && waitUntilConnmanIsBack();
}

bool World::waitUntilConnmanIsBack()
{
    return waitUntilStarted(1) && eventually([&] { return m_connman.isWifiPowered(); });
}

bool World::restartBoth()
{
    if (!stopDaemon() || !m_connman.stopAndWait()) {
        return false;
    }
    m_daemon->markLog();
    return startBoth() && settle();
}

bool World::startBoth()
{
    return storeRegion() && m_connman.startAndWait() && startDaemon() && waitUntilStarted(1);
}

bool World::waitUntilStarted(int regionCommands)
{
    const bool regionIsDecided = eventually([&] {
        const QString log = m_daemon->log();
        return log.count(regionIsSet) + log.count(regionIsNotSet) >= regionCommands;
    });
    // The power cycle that follows blocks the daemon: it answers when that is over. A ConnMan that is stopped
    // in the middle of it keeps Wi-Fi off.
    return regionIsDecided && m_client->call("getWifiRegion").isValid();
}

/// Through the daemon, because it keeps the preferred network in memory and on disk.
bool World::forgetNetworks()
{
    const QStringList favorites = m_connman.favorites();
    for (const QString &identifier : favorites) {
        m_client->call("forgetWifi", identifier);
    }
    return preferredNetwork().isEmpty() && m_connman.favorites().isEmpty();
}

bool World::settle()
{
    // Switched on through ConnMan: the daemon would expect to rejoin its preferred network and say so when
    // any is joined.
    const bool ready = m_connman.setWifiPowered(true) && !m_connman.find("Atelier"_s, "psk"_s).isEmpty() &&
                       eventually([] { return Kernel::joinedNetwork().isEmpty(); }) &&
                       eventually([] { return Device::led("led8"_s) == LedPattern::off(); });
    forgetTheStory();
    return ready;
}

QString World::preferredNetwork()
{
    const QSettings store(settingsFile("main.conf"_s), QSettings::IniFormat);
    return store.value("wifi/prefered"_s).toString();
}
