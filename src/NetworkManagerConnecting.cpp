// NetworkManager's operations that connect, disconnect and forget networks.

#include "NetworkManager.h"

#include "NetworkManagerConstants.h"
#include "NetworkSettings.h"

bool NetworkManager::connect(const QString &name)
{
    if (name.isEmpty()) {
        return refuse("Can't connect with an empty network-name.",
                      QStringLiteral("Can't connect with an empty network-name."));
    }
    const Service service = findOrReport(name);
    if (!service) {
        return false;
    }

    setAutoConnect(false);
    const bool connected = service->connect();
    if (connected) {
        announceConnected(service);
        emit networkConnected(name);
    } else {
        emit error(QStringLiteral("Unable to connect network '%1'.").arg(name));
        speak(Sentence::ConnectionFailed);
    }
    setAutoConnect(true);
    return connected;
}

void NetworkManager::announceConnected(const Service &service)
{
    m_poweredOn = false;
    m_settings->setPreferedWifi(service);
    speak(Sentence::Connected);
}

bool NetworkManager::disconnect(const QString &name)
{
    if (name.isEmpty()) {
        return refuse("Can't disconnect with an empty network-name.",
                      QStringLiteral("Invalid parameter, network: '%1'").arg(name));
    }
    const Service service = findOrReport(name);
    if (!service) {
        return false;
    }

    // First, so that the daemon does not rejoin it by itself.
    m_settings->removePreferedWifi(service);
    if (!service->disconnect()) {
        emit error(QStringLiteral("Unable to disconnect network '%1'.").arg(name));
        return false;
    }
    m_wifiLed.off();
    emit networkDisconnected(name);
    return true;
}

bool NetworkManager::forgetWifi(const QString &ssid)
{
    if (ssid.isEmpty()) {
        qCWarning(logNetworkManager) << "Can't forget an empty SSID.";
        emit error(QStringLiteral("Invalid parameter, ssid: '%1'").arg(ssid));
        return false;
    }
    const Service service = reportIfMissing(findWifiServiceByName(ssid, true), ssid);
    if (!service) {
        return false;
    }

    if (ssid.contains(NetworkManagerConstants::EnterpriseSecurity)) {
        m_settings->removeWpaConfFile(ssid);
    }
    m_settings->removePreferedWifi(service);
    if (!service->remove()) {
        emit error(QStringLiteral("Unable to forget wifi-network '%1'.").arg(ssid));
        return false;
    }
    emit networkForgot(ssid);
    return true;
}
