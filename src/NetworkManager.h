#pragma once

#include "AutoConnect.h"
#include "ConnmanManager.h"
#include "EthernetAnnouncement.h"
#include "Feedback.h"
#include "KeyChord.h"
#include "OperationScopes.h"
#include "PreferredNetwork.h"
#include "ServiceLookup.h"
#include "WifiSwitch.h"

#include <libkeyboard/Keyboard.h>

#include <QHostAddress>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <memory>

class ConnmanAgent;
class ConnmanAgentDBus;
class ConnmanTechnology;
class NetworkSettings;

namespace libtactora {
class DBusService;
}

/// The daemon's centre: it owns all other objects, attaches to ConnMan, and performs the clients' operations.
/// What it decides of its own accord is in rooms of their own: PreferredNetwork, WifiSwitch,
/// EthernetAnnouncement, Feedback.
///
/// A "name" or "ssid" argument of an operation is a network identifier (ConnmanService::identifier()).
/// Operations return false or an empty value on failure; the reason is logged and sent as error(). Until
/// ConnMan has been seen for the first time there are no networks: look-ups find nothing, lists are empty,
/// power is off. An operation that looks a network up scans once, for seconds, when it is not there.
///
/// The implementation is split by concern:
///   NetworkManager.cpp                  construction, attaching to ConnMan, keyboard, interface states, the
///   device NetworkManagerErrors.cpp            how operations find their network, and say why they fail
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
    void error(const QString &message);
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
    bool configureIPv6(const QString &name, const QString &method);
    /// ConnmanService::getIpv4Configuration(), as it was last told.
    QVariantMap getConfiguration(const QString &name);
    /// ConnmanService::getUpdatedIpv6Configuration().
    QVariantMap getIPv6Configuration(const QString &name);
    /// The hardware address of a network interface such as "wlan0".
    QString getHwAddress(const QString &name) const;
    QString getAddress(const QString &name);
    QString getNetmask(const QString &name);
    QString getGateway(const QString &name);
    QString getIPv6Address(const QString &name);
    QString getPrefix(const QString &name);
    QStringList getNameservers(const QString &name);
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
    bool getWifiPower();
    /// Makes ConnMan forget a Wi-Fi network's credentials.
    bool forgetWifi(const QString &ssid);
    bool registerWifi(const QString &ssid, const QString &psk);
    bool registerHiddenWifi(const QString &hiddenName, const QString &ssid, const QString &psk);
    bool registerWiFiWpa2Enterprise(const QString &identityName, const QString &ssid, const QString &psk,
                                    const QString &eap, const QString &authPhase);
    bool registerWifiWps(const QString &ssid, const QString &secret);
    bool checkWifiTechnology();
    bool checkBluetoothTechnology();
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
    using Service = ServiceLookup::Service;
    using IfMissing = ServiceLookup::IfMissing;
    using Sentence = Feedback::Sentence;

    struct ManualAddresses
    {
        QString address;
        QString netmask;
        QString gateway;
    };

    // Attaching to ConnMan
    void createManager();
    void registerAgent();
    void createWifiTechnology();
    void setUpWifi();
    void initMacAddress();
    void wifiStateChanged(ConnmanManager::InterfaceState state);
    void ethernetStateChanged(ConnmanManager::InterfaceState state);

    Service findOrReport(const QString &name);
    Service reportIfMissing(const Service &service, const QString &name);
    bool refuse(const char *logText, const QString &errorText);
    bool refuseValue(const char *logText, const QString &value, const QString &errorTemplate);
    void announceConnected(const Service &service);

    // Queries
    QString ipv4Value(const QString &name, const QString &key);
    QString ipv6Value(const QString &name, const QString &key);
    bool hasTechnology(const QString &name);

    // Registering
    bool validateService(const Service &service, const QString &name);
    bool validateCredentials(const QString &ssid, const QString &psk);
    Service serviceToRegister(const QString &ssid);
    bool registerWithCredentials(const Service &service, const QString &ssid, const Credentials &credentials,
                                 const std::function<void()> &onFailure = {});
    void reportUnprovisionable(const QString &errorTemplate, const QString &value);
    bool registerWifiWPSNamed(const QString &ssid);
    bool registerWifiWPSAny() const;

    // IP configuration
    Service serviceToConfigure(const QString &name);
    bool configureManual(ConnmanService &service, const QString &name, const ManualAddresses &texts);
    bool reportRefusedConfiguration(bool configured, const QString &name, const QString &method);

    Feedback m_feedback;
    std::unique_ptr<libtactora::DBusService> m_connmanWatcher;

    // ConnMan's objects, made when it is first seen
    ConnmanManager *m_manager = nullptr;
    ConnmanAgent *m_agent = nullptr;
    ConnmanAgentDBus *m_agentAdaptor = nullptr;
    ConnmanTechnology *m_wifi = nullptr;

    NetworkSettings *m_settings;
    ServiceLookup m_lookup;
    AutoConnect m_autoConnect;
    PreferredNetwork m_preferred;
    WifiSwitch m_wifiSwitch;
    EthernetAnnouncement m_ethernetAnnouncement;
    libkeyboard::Keyboard m_keyboard;
    KeyChord m_chord;
};
