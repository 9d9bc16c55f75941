// NetworkManager's preferred network, auto-connect, and the key chord that switches Wi-Fi.

#include "NetworkManager.h"

#include "NetworkManagerConstants.h"
#include "NetworkSettings.h"

namespace {

using namespace NetworkManagerConstants;

// evdev codes of the chord's keys.
constexpr libkeyboard::Keyboard::Key ModifierKey{32};
constexpr libkeyboard::Keyboard::Key WifiOnKey{37};
constexpr libkeyboard::Keyboard::Key WifiOffKey{38};

} // namespace

void NetworkManager::tryConnectToPreferred()
{
    const QString preferred = m_settings->getPreferedWifi();
    qCDebug(logNetworkManager) << "Trying to connect to prefered network" << preferred;
    if (preferred.isEmpty()) {
        qCDebug(logNetworkManager) << "No prefered network is registered.";
        return;
    }
    if (!isWifiIdle()) {
        qCDebug(logNetworkManager) << "Interface"
                                   << "wlan0"
                                   << "isn't Idle, is" << m_wifiState;
        return;
    }
    const QList<Service> all = services();
    for (const Service &service : all) {
        const QString type = service->type();
        if (type != WifiType) {
            qCDebug(logNetworkManager) << "Skipping network of type" << type;
            continue;
        }
        if (service->name() != preferred) {
            qCDebug(logNetworkManager)
                << "Skipping network whose name doesn't match the prefered-network name.";
            continue;
        }
        if (service->state() != ConnmanService::State::Idle) {
            qCWarning(logNetworkManager) << "State of prefered network is not idle, but the state of the"
                                         << "wlan0"
                                         << "interface is?!?";
            return;
        }
        if (service->connect()) {
            announceReconnection(preferred);
            return;
        }
        qCWarning(logNetworkManager).nospace()
            << "Failed to connect to prefered network " << preferred << " (" << service->path() << ")";
    }
}

bool NetworkManager::isWifiIdle() const
{
    return m_wifiState == ConnmanService::State::Idle || m_wifiState == ConnmanService::State::Unknown;
}

void NetworkManager::announceReconnection(const QString &name)
{
    if (!m_poweredOn) {
        return;
    }
    m_poweredOn = false;
    speak(Sentence::WifiReconnected);
    emit networkConnected(name);
}

void NetworkManager::setAutoConnect(bool on) const
{
    const QList<Service> all = services();
    for (const Service &service : all) {
        const QString type = service->type();
        if (type == WifiType) {
            service->setAutoConnect(on);
        } else {
            qCDebug(logNetworkManager) << "Skipping network of type" << type;
        }
    }
}

void NetworkManager::keyDown(libkeyboard::Keyboard::Key key)
{
    if (key == ModifierKey) {
        m_modifierHeld = true;
    }
}

void NetworkManager::keyUp(libkeyboard::Keyboard::Key key)
{
    if (key == ModifierKey) {
        m_modifierHeld = false;
        return;
    }
    if (!m_modifierHeld) {
        return;
    }
    if (key == WifiOffKey) {
        speak(Sentence::WifiSwitchingOff);
        resetWiFi(false, false);
    } else if (key == WifiOnKey) {
        speak(Sentence::WifiSwitchingOn);
        resetWiFi(true, false);
    }
}
