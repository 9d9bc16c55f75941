// NetworkManager's operations that register new Wi-Fi networks: credentials go to the agent, ConnMan connects
// and keeps them.

#include "NetworkManager.h"

#include "NetworkManagerConstants.h"
#include "NetworkSettings.h"

using namespace NetworkManagerConstants;

bool NetworkManager::validateCredentials(const QString &ssid, const QString &psk) const
{
    if (ssid.isEmpty()) {
        return refuse("Can't register without an SSID.",
                      QStringLiteral("Invalid parameter, ssid: '%1'").arg(ssid));
    }
    if (ssid.endsWith(OpenSecurity)) {
        return true;
    }
    if (psk.isEmpty()) {
        return refuse("Can't register without a PSK.",
                      QStringLiteral("Invalid parameter, psk: '%1'").arg(psk));
    }
    return true;
}

bool NetworkManager::validateService(const Service &service, const QString &name) const
{
    if (service) {
        return true;
    }
    scanWifi();
    const Service found = reportIfMissing(findWifiServiceByName(name, true), name);
    if (!found) {
        return false;
    }
    if (found->isFavorite()) {
        return refuse("Trying to register an already registered network.",
                      QStringLiteral("Network already registered."));
    }
    return true;
}

NetworkManager::Service NetworkManager::serviceToRegister(const QString &ssid) const
{
    const Service service = findWifiServiceByName(ssid, true);
    if (!validateService(service, ssid)) {
        return {};
    }
    return service ? service : reportIfMissing(findWifiServiceByName(ssid, false), ssid);
}

void NetworkManager::setCredentials(const QString &ssid, const Credentials &credentials)
{
    if (m_agent) {
        m_agent->setRequest(ssid, credentials.secret, credentials.type, credentials.extraName);
    }
}

bool NetworkManager::registerWithCredentials(const Service &service, const QString &ssid,
                                             const Credentials &credentials,
                                             const std::function<void()> &onFailure)
{
    setCredentials(ssid, credentials);
    setAutoConnect(false);
    const bool connected = service->connect();
    if (connected) {
        announceConnected(service);
        emit networkRegistered(ssid);
    } else {
        const QString reason = m_agent->lastError();
        qCCritical(logNetworkManager) << "Failed to register network:" << reason;
        emit error(reason);
        speak(Sentence::ConnectionFailed);
        if (onFailure) {
            onFailure();
        }
    }
    setCredentials({}, {});
    setAutoConnect(true);
    return connected;
}

bool NetworkManager::registerWifi(const QString &ssid, const QString &psk)
{
    if (!validateCredentials(ssid, psk)) {
        return false;
    }
    const Service service = serviceToRegister(ssid);
    return service && registerWithCredentials(service, ssid, {psk, ConnmanAgent::RequestType::Psk, {}});
}

bool NetworkManager::registerHiddenWifi(const QString &hiddenName, const QString &ssid, const QString &psk)
{
    if (hiddenName.isEmpty()) {
        return refuse("Can't register without a name.",
                      QStringLiteral("Invalid parameter, hiddenName: '%1'").arg(hiddenName));
    }
    if (!validateCredentials(ssid, psk)) {
        return false;
    }
    const Service service = serviceToRegister(ssid);
    return service &&
           registerWithCredentials(service, ssid, {psk, ConnmanAgent::RequestType::Hidden, hiddenName});
}

bool NetworkManager::registerWiFiWpa2Enterprise(const QString &identityName, const QString &ssid,
                                                const QString &psk, const QString &eap,
                                                const QString &authPhase)
{
    if (identityName.isEmpty()) {
        return refuse("Can't register without a identityname.",
                      QStringLiteral("Invalid parameter, identityname: '%1'").arg(identityName));
    }
    if (eap.isEmpty()) {
        return refuse("Can't register without an EAP.",
                      QStringLiteral("Invalid parameter, EAP: '%1'").arg(eap));
    }
    if (authPhase.isEmpty()) {
        return refuse("Can't register without an authentification phase.",
                      QStringLiteral("Invalid parameter, authPhase: '%1'").arg(authPhase));
    }
    if (!validateCredentials(ssid, psk)) {
        return false;
    }
    const Service service = serviceToRegister(ssid);
    if (!service || !m_settings->createWpaConfFile(ssid, service->name(), eap, authPhase)) {
        return false;
    }
    return registerWithCredentials(service, ssid,
                                   {psk, ConnmanAgent::RequestType::Wpa2Enterprise, identityName},
                                   [this, &ssid] { m_settings->removeWpaConfFile(ssid); });
}

bool NetworkManager::registerWifiWps(const QString &ssid, const QString &secret)
{
    setCredentials(ssid, {secret, ConnmanAgent::RequestType::Wps, {}});
    const bool registered = ssid.isEmpty() ? registerWifiWPSAny() : registerWifiWPSNamed(ssid);
    setCredentials({}, {});
    return registered;
}

bool NetworkManager::registerWifiWPSNamed(const QString &ssid)
{
    Service service = findWifiServiceByName(ssid, true);
    if (!service) {
        scanWifi();
        service = findWifiServiceByName(ssid, false);
    }
    if (!service) {
        return refuse("Unknown network.", QStringLiteral("Unknown network."));
    }
    if (service->isFavorite()) {
        return refuse("Network already registered.", QStringLiteral("Network already registered."));
    }

    setAutoConnect(false);
    const bool connected = service->connect();
    if (connected) {
        m_settings->setPreferedWifi(service);
        emit networkRegistered(ssid);
    } else {
        qCCritical(logNetworkManager) << "Unable to register to network" << service->name() << "using WPS.";
        emit error(QStringLiteral("Unable to register network '%1' using WPS.").arg(service->name()));
    }
    setAutoConnect(true);
    return connected;
}

bool NetworkManager::registerWifiWPSAny()
{
    qCCritical(logNetworkManager) << "Connect to any WPS network isn't supported.";
    return false;
}
