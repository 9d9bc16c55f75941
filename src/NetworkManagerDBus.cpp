#include "NetworkManagerDBus.h"

#include "NetworkManager.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDebug>

namespace {

const QLatin1String ServiceName("com.tactora.NetworkManager");
const QLatin1String ObjectPath("/");

} // namespace

NetworkManagerDBus::NetworkManagerDBus(NetworkManager *networkManager)
    : QDBusAbstractAdaptor(networkManager)
    , m_networkManager(networkManager)
{
    setAutoRelaySignals(true);

    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        qCritical() << "Unable to connect to system-bus.";
        return;
    }
    if (!bus.registerObject(ObjectPath, networkManager, QDBusConnection::ExportAdaptors)) {
        qCritical() << "Unable to register object on system-bus.";
        return;
    }
    if (bus.registerService(ServiceName)) {
        return;
    }
    // Another owner of the name is no error to the bus.
    const QString reason = bus.lastError().message();
    if (reason.isEmpty()) {
        qCritical() << "Unable to register service: Service-name in use.";
    } else {
        qCritical() << "Unable to register service:" << reason;
    }
}

bool NetworkManagerDBus::connect(const QString &name)
{
    return m_networkManager->connect(name);
}

bool NetworkManagerDBus::disconnect(const QString &name)
{
    return m_networkManager->disconnect(name);
}

bool NetworkManagerDBus::configure(const QString &name, const QString &method)
{
    return m_networkManager->configure(name, method, {}, {}, {});
}

bool NetworkManagerDBus::configure(const QString &name, const QString &method, const QString &address,
                                   const QString &netmask, const QString &gateway)
{
    return m_networkManager->configure(name, method, address, netmask, gateway);
}

bool NetworkManagerDBus::configureIPv6(const QString &name, const QString &method)
{
    return m_networkManager->configureIPv6(name, method);
}

QString NetworkManagerDBus::getHwAddress(const QString &name)
{
    return m_networkManager->getHwAddress(name);
}

QString NetworkManagerDBus::getAddress(const QString &name)
{
    return m_networkManager->getAddress(name);
}

QString NetworkManagerDBus::getNetmask(const QString &name)
{
    return m_networkManager->getNetmask(name);
}

QString NetworkManagerDBus::getGateway(const QString &name)
{
    return m_networkManager->getGateway(name);
}

QString NetworkManagerDBus::getIPv6Address(const QString &name)
{
    return m_networkManager->getIPv6Address(name);
}

QString NetworkManagerDBus::getPrefix(const QString &name)
{
    return m_networkManager->getPrefix(name);
}

QVariantMap NetworkManagerDBus::getConfiguration(const QString &name)
{
    return m_networkManager->getConfiguration(name);
}

QVariantMap NetworkManagerDBus::getIPv6Configuration(const QString &name)
{
    return m_networkManager->getIPv6Configuration(name);
}

QStringList NetworkManagerDBus::getNameservers(const QString &name)
{
    return m_networkManager->getNameservers(name);
}

bool NetworkManagerDBus::setNameservers(const QString &name, const QStringList &servers)
{
    return m_networkManager->setNameservers(name, servers);
}

QVariantMap NetworkManagerDBus::networks()
{
    return m_networkManager->networks();
}

QStringList NetworkManagerDBus::wpsNetworks()
{
    return m_networkManager->wpsNetworks();
}

QStringList NetworkManagerDBus::activeNetworks()
{
    return m_networkManager->activeNetworks();
}

bool NetworkManagerDBus::setWifiPower(bool on)
{
    return m_networkManager->setWifiPower(on);
}

bool NetworkManagerDBus::getWifiPower()
{
    return m_networkManager->getWifiPower();
}

bool NetworkManagerDBus::forgetWifi(const QString &ssid)
{
    return m_networkManager->forgetWifi(ssid);
}

bool NetworkManagerDBus::registerWifi(const QString &ssid, const QString &psk)
{
    return m_networkManager->registerWifi(ssid, psk);
}

bool NetworkManagerDBus::registerHiddenWifi(const QString &hiddenName, const QString &ssid,
                                            const QString &psk)
{
    return m_networkManager->registerHiddenWifi(hiddenName, ssid, psk);
}

bool NetworkManagerDBus::registerWiFiWpa2Enterprise(const QString &identityName, const QString &ssid,
                                                    const QString &psk, const QString &eap,
                                                    const QString &authPhase)
{
    return m_networkManager->registerWiFiWpa2Enterprise(identityName, ssid, psk, eap, authPhase);
}

bool NetworkManagerDBus::registerWifiWps(const QString &ssid)
{
    return m_networkManager->registerWifiWps(ssid, {});
}

bool NetworkManagerDBus::registerWifiWps(const QString &ssid, const QString &secret)
{
    return m_networkManager->registerWifiWps(ssid, secret);
}

bool NetworkManagerDBus::checkWifiTechnology()
{
    return m_networkManager->checkWifiTechnology();
}

bool NetworkManagerDBus::checkBluetoothTechnology()
{
    return m_networkManager->checkBluetoothTechnology();
}

QString NetworkManagerDBus::getWifiRegion()
{
    return m_networkManager->getWifiRegion();
}

bool NetworkManagerDBus::setWifiRegion(const QString &region)
{
    return m_networkManager->setWifiRegion(region);
}

bool NetworkManagerDBus::getLockRegion()
{
    return m_networkManager->getLockRegion();
}

bool NetworkManagerDBus::setLockRegion(bool locked)
{
    return m_networkManager->setLockRegion(locked);
}

QString NetworkManagerDBus::getHostName()
{
    return m_networkManager->getHostName();
}

bool NetworkManagerDBus::setHostName(const QString &hostName)
{
    return m_networkManager->setHostName(hostName);
}
