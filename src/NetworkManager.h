#pragma once

#include "ConnmanAgent.h"
#include "ConnmanManager.h"
#include "ConnmanService.h"

#include <libkeyboard/Keyboard.h>
#include <libled/Led.h>
#include <libtranslation/Sid.h>

#include <QHostAddress>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <memory>

class ConnmanAgentDBus;
class ConnmanTechnology;
class NetworkSettings;

namespace libspeech::detail {
class Speech;
}
namespace libtactora {
class DBusService;
}

/// The daemon's centre and the only place of its policy: it owns all other objects, joins the preferred
/// network, performs the clients' operations and tells the user what happens.
///
/// A "name" or "ssid" argument of an operation is a network identifier (ConnmanService::identifier()).
/// Operations return false or an empty value on failure; the reason is logged and sent as error(). Until
/// ConnMan has been seen for the first time there are no networks: lookups find nothing, lists are empty,
/// power is off.
///
/// The implementation is split by concern:
///   NetworkManager.cpp                  construction, keyboard, attaching to ConnMan, Wi-Fi power
///   NetworkManagerLookup.cpp            finding services
///   NetworkManagerPreferred.cpp         preferred network, auto-connect, key chord
///   NetworkManagerInterfaces.cpp        interface states on LEDs and in speech
///   NetworkManagerQueries.cpp           the read-only operations
///   NetworkManagerConnecting.cpp        connect, disconnect, forget
///   NetworkManagerRegistering.cpp       registering networks
///   NetworkManagerIpConfiguration.cpp   IPv4, IPv6, name servers
class NetworkManager : public QObject
{
    Q_OBJECT

public:
    /// Builds everything that does not need ConnMan; never blocks.
    explicit NetworkManager(QObject *parent);
    ~NetworkManager() override;

    /// Opens the keyboard's evdev device; without one the daemon runs without keys.
    void initKeyboard(const QString &device);
    /// Switches Wi-Fi through ConnMan's command-line tool; a failure is spoken and logged unless `quiet`.
    void resetWiFi(bool enable, bool quiet);

signals:
    /// Why the operation that is about to return has failed.
    void error(const QString &message) const;
    void powerChanged(bool on);
    void regionChanged(const QString &region, bool locked);
    void networkRegistered(const QString &name);
    void networkForgot(const QString &name);
    void networkConnected(const QString &name);
    void networkDisconnected(const QString &name);

public slots:
    /// Connects a network; on success it becomes the preferred one.
    bool connect(const QString &name);
    /// Disconnects a network, which is then no longer preferred.
    bool disconnect(const QString &name);
    /// Sets IPv4 "off", "dhcp" or "manual"; the addresses count only for "manual".
    bool configure(const QString &name, const QString &method, const QString &address, const QString &netmask,
                   const QString &gateway);
    /// Sets IPv6 "off" or "auto".
    bool configureIPv6(const QString &name, const QString &method) const;
    QVariantMap getConfiguration(const QString &name) const;
    QVariantMap getIPv6Configuration(const QString &name) const;
    /// The hardware address of a network interface such as "wlan0".
    QString getHwAddress(const QString &name) const;
    QString getAddress(const QString &name) const;
    QString getNetmask(const QString &name) const;
    QString getGateway(const QString &name) const;
    QString getIPv6Address(const QString &name) const;
    QString getPrefix(const QString &name) const;
    QStringList getNameservers(const QString &name) const;
    /// Sets the name servers in the given order; an empty list clears them.
    bool setNameservers(const QString &name, const QStringList &servers);
    /// Every network's properties by identifier, after a scan. IPv6 of every network is set to "auto" on the
    /// way.
    QVariantMap networks();
    /// The names of the networks that offer WPS, after a scan.
    QStringList wpsNetworks();
    /// The names of the networks that are connecting or connected.
    QStringList activeNetworks();
    bool setWifiPower(bool on);
    bool getWifiPower() const;
    /// Makes ConnMan forget a Wi-Fi network's credentials.
    bool forgetWifi(const QString &ssid);
    bool registerWifi(const QString &ssid, const QString &psk);
    bool registerHiddenWifi(const QString &hiddenName, const QString &ssid, const QString &psk);
    bool registerWiFiWpa2Enterprise(const QString &identityName, const QString &ssid, const QString &psk,
                                    const QString &eap, const QString &authPhase);
    bool registerWifiWps(const QString &ssid, const QString &secret);
    bool checkWifiTechnology() const;
    bool checkBluetoothTechnology() const;
    QString getWifiRegion() const;
    bool setWifiRegion(const QString &region);
    bool getLockRegion() const;
    bool setLockRegion(bool locked);
    QString getHostName() const;
    bool setHostName(const QString &hostName);

    /// Attaches to ConnMan, each time it comes onto the bus.
    void connmanServiceConnected();
    void interfaceStateChanged(const QString &interface, ConnmanManager::InterfaceState state);
    /// Tries once to join the preferred network, if Wi-Fi is idle.
    void tryConnectToPreferred();
    void keyUp(libkeyboard::Keyboard::Key key);
    void keyDown(libkeyboard::Keyboard::Key key);

private:
    using Service = std::shared_ptr<ConnmanService>;
    using Sentence = libtranslation::Sid::NetworkManager;

    struct Credentials
    {
        QString secret;
        ConnmanAgent::RequestType type = ConnmanAgent::RequestType::None;
        QString extraName;
    };

    struct ManualAddresses
    {
        QString address;
        QString netmask;
        QString gateway;
    };

    // Attaching to ConnMan
    void createConnmanManager();
    void registerAgent();
    void waitForWifiPowerState() const;
    void initMacAddress() const;
    void powerCycleWifi();
    void tryPreferredAfter(std::chrono::milliseconds delay, std::chrono::milliseconds pauseAfterScan);
    static void initLed(Led &led, const char *complaint);

    // Lookup
    QList<Service> services() const;
    bool scanWifi(std::chrono::milliseconds pause = {}) const;
    Service findService(const std::function<bool(const ConnmanService &)> &matches, bool scanIfMissing) const;
    Service findServiceByName(const QString &name, bool scanIfMissing) const;
    Service findWifiServiceByName(const QString &name, bool scanIfMissing) const;
    Service findServiceByInterface(const QString &interface, bool scanIfMissing) const;
    Service findOrReport(const QString &name) const;
    Service reportIfMissing(const Service &service, const QString &name) const;
    bool refuse(const char *logText, const QString &errorText) const;

    // Preferred network and feedback
    void setAutoConnect(bool on) const;
    bool isWifiIdle() const;
    void announceReconnection(const QString &name);
    void announceConnected(const Service &service);
    void wifiStateChanged(ConnmanManager::InterfaceState state);
    void ethernetStateChanged(ConnmanManager::InterfaceState state);
    void pollEthernetAddress();
    void announceEthernetAddress(const ConnmanService &service);
    void ethernetAddressSpoken();
    void speak(const Sentence &sentence, const QStringList &arguments = {}) const;

    // Queries
    QString ipv4Value(const QString &name, const QString &key) const;
    QString ipv6Value(const QString &name, const QString &key) const;
    bool hasTechnology(const QString &name) const;

    // Registering
    bool validateService(const Service &service, const QString &name) const;
    bool validateCredentials(const QString &ssid, const QString &psk) const;
    Service serviceToRegister(const QString &ssid) const;
    void setCredentials(const QString &ssid, const Credentials &credentials);
    bool registerWithCredentials(const Service &service, const QString &ssid, const Credentials &credentials,
                                 const std::function<void()> &onFailure = {});
    bool registerWifiWPSNamed(const QString &ssid);
    bool registerWifiWPSAny();

    // IP configuration
    Service serviceToConfigure(const QString &name) const;
    bool configureManual(ConnmanService &service, const QString &name, const ManualAddresses &texts) const;
    bool reportRefusedConfiguration(bool configured, const QString &name, const QString &method) const;
    bool refuseValue(const char *logText, const QString &value, const QString &errorTemplate) const;

    bool m_poweredOn = false;
    Led m_ethernetLed;
    Led m_wifiLed;
    std::unique_ptr<libtactora::DBusService> m_connmanWatcher;
    ConnmanAgent *m_agent = nullptr;
    ConnmanManager *m_manager = nullptr;
    ConnmanAgentDBus *m_agentAdaptor = nullptr;
    ConnmanTechnology *m_wifi = nullptr;
    ConnmanManager::InterfaceState m_wifiState = ConnmanManager::InterfaceState::Unknown;
    NetworkSettings *m_settings;
    QTimer m_ethernetTimer;
    libspeech::detail::Speech *m_speech;
    libkeyboard::Keyboard m_keyboard;
    bool m_modifierHeld = false;
    bool m_ethernetAnnounced = false;
    int m_ethernetPolls = 0;
};
