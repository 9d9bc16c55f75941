// NetworkManager's operations that register new Wi-Fi networks: credentials go to the agent, ConnMan connects
// and keeps them.

#include "NetworkManager.h"

#include "ConnmanAgent.h"
#include "ConnmanNames.h"
#include "NetworkManagerLog.h"
#include "NetworkSettings.h"

bool NetworkManager::validateCredentials(const QString &ssid, const QString &psk)
{
    if (ssid.isEmpty()) {
        return refuse("Can't register without an SSID.",
                      QStringLiteral("Invalid parameter, ssid: '%1'").arg(ssid));
    }
    if (ssid.endsWith(ConnmanNames::OpenSecurity)) {
        return true;
    }
    if (psk.isEmpty()) {
        return refuse("Can't register without a PSK.",
                      QStringLiteral("Invalid parameter, psk: '%1'").arg(psk));
    }
    return true;
}

bool NetworkManager::validateService(const Service &service, const QString &name)
{
    if (service) {
        return true;
    }
    m_lookup.scan();
    const Service found = reportIfMissing(m_lookup.wifiByName(name, IfMissing::ScanOnce), name);
    if (!found) {
        return false;
    }
    if (found->isFavorite()) {
        return refuse("Trying to register an already registered network.",
                      QStringLiteral("Network already registered."));
    }
    return true;
}

NetworkManager::Service NetworkManager::serviceToRegister(const QString &ssid)
{
    const Service service = m_lookup.wifiByName(ssid, IfMissing::ScanOnce);
    if (!validateService(service, ssid)) {
        return {};
    }
    return service ? service : reportIfMissing(m_lookup.wifiByName(ssid, IfMissing::GiveUp), ssid);
}

bool NetworkManager::registerWithCredentials(const Service &service, const QString &ssid,
                                             const Credentials &credentials,
                                             const std::function<void()> &onFailure)
{
    const ConnectingScope connectingScope(m_autoConnect, m_preferred);
    const CredentialsScope credentialsScope(m_agent, ssid, credentials);
    if (service->connect()) {
        announceConnected(service);
        emit networkRegistered(ssid);
        return true;
    }
    const QString reason = m_agent->lastError();
    qCCritical(logNetworkManager) << "Failed to register network:" << reason;
    emit error(reason);
    m_feedback.speak(Sentence::ConnectionFailed);
    if (onFailure) {
        onFailure();
    }
    return false;
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
    if (!service) {
        return false;
    }
    if (!m_settings->createWpaConfFile(ssid, service->name(), eap, authPhase)) {
        reportUnprovisionable(QStringLiteral("Invalid parameter, name: '%1'"), service->name());
        reportUnprovisionable(QStringLiteral("Invalid parameter, EAP: '%1'"), eap);
        reportUnprovisionable(QStringLiteral("Invalid parameter, authPhase: '%1'"), authPhase);
        return false;
    }
    return registerWithCredentials(service, ssid,
                                   {psk, ConnmanAgent::RequestType::Wpa2Enterprise, identityName},
                                   [this, &ssid] { m_settings->removeWpaConfFile(ssid); });
}

void NetworkManager::reportUnprovisionable(const QString &errorTemplate, const QString &value)
{
    if (!NetworkSettings::isProvisionable(value)) {
        emit error(errorTemplate.arg(value));
    }
}

bool NetworkManager::registerWifiWps(const QString &ssid, const QString &secret)
{
    const CredentialsScope scope(m_agent, ssid, {secret, ConnmanAgent::RequestType::Wps, {}});
    return ssid.isEmpty() ? registerWifiWPSAny() : registerWifiWPSNamed(ssid);
}

bool NetworkManager::registerWifiWPSNamed(const QString &ssid)
{
    Service service = m_lookup.wifiByName(ssid, IfMissing::ScanOnce);
    if (!service) {
        service = m_lookup.wifiByName(ssid, IfMissing::ScanOnce);
    }
    if (!service) {
        return refuse("Unknown network.", QStringLiteral("Unknown network."));
    }
    if (service->isFavorite()) {
        return refuse("Network already registered.", QStringLiteral("Network already registered."));
    }

    const ConnectingScope scope(m_autoConnect, m_preferred);
    if (!service->connect()) {
        qCCritical(logNetworkManager) << "Unable to register to network" << service->name() << "using WPS.";
        emit error(QStringLiteral("Unable to register network '%1' using WPS.").arg(service->name()));
        return false;
    }
    m_settings->setPreferedWifi(service);
    emit networkRegistered(ssid);
    return true;
}

bool NetworkManager::registerWifiWPSAny() const
{
    qCCritical(logNetworkManager) << "Connect to any WPS network isn't supported.";
    return false;
}
