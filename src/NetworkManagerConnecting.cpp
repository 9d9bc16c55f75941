// NetworkManager's operations that connect, disconnect and forget networks.

#include "NetworkManager.h"

#include "ConnmanNames.h"
#include "NetworkManagerLog.h"
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

    const ConnectingScope scope(m_autoConnect, m_preferred);
    if (!service->connect()) {
        emit error(QStringLiteral("Unable to connect network '%1'.").arg(name));
        m_feedback.speak(Sentence::ConnectionFailed);
        return false;
    }
    announceConnected(service);
    emit networkConnected(name);
    return true;
}

void NetworkManager::announceConnected(const Service &service)
{
    m_preferred.choose(service);
    m_feedback.speak(Sentence::Connected);
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
    m_feedback.showDisconnected();
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
    const Service service = reportIfMissing(m_lookup.wifiByName(ssid, IfMissing::ScanOnce), ssid);
    if (!service) {
        return false;
    }

    if (ssid.contains(ConnmanNames::EnterpriseSecurity)) {
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
