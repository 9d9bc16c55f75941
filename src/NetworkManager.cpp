// NetworkManager's construction, attaching to ConnMan, keyboard, interface states, and the device's own
// settings.

#include "NetworkManager.h"

#include "ConnmanAgentDBus.h"
#include "ConnmanNames.h"
#include "ConnmanTechnology.h"
#include "ConnmanTypes.h"
#include "NetworkInterfaces.h"
#include "NetworkManagerLog.h"
#include "NetworkSettings.h"

#include <libtactora/DBusService.h>

#include <QDBusConnection>
#include <QNetworkInterface>

Q_LOGGING_CATEGORY(logNetworkManager, "NetworkManager", QtCriticalMsg)

NetworkManager::NetworkManager(QObject *parent)
    : QObject(parent)
    , m_connmanWatcher(std::make_unique<libtactora::DBusService>(QDBusConnection::systemBus(),
                                                                 ConnmanNames::Service, this))
    , m_settings(new NetworkSettings(this))
    , m_autoConnect(m_lookup, nullptr)
    , m_preferred(*m_settings, m_lookup, m_feedback, nullptr)
    , m_wifiSwitch(m_lookup, m_preferred, m_feedback, nullptr)
    , m_ethernetAnnouncement(m_feedback, nullptr)
    , m_keyboard(QString())
{
    registerConnmanTypes();
    qRegisterMetaType<ConnmanManager::InterfaceState>("ConnmanManager::InterfaceState");
    QObject::connect(m_connmanWatcher.get(), &libtactora::DBusService::connected, this,
                     &NetworkManager::connmanServiceConnected);
    QObject::connect(this, &NetworkManager::powerChanged, &m_preferred, [this](bool on) {
        if (on) {
            m_preferred.wifiWasSwitchedOn();
        }
    });
    QObject::connect(&m_wifiSwitch, &WifiSwitch::powerChanged, this, &NetworkManager::powerChanged);
    QObject::connect(&m_preferred, &PreferredNetwork::returned, this, &NetworkManager::networkConnected);
    m_feedback.start();
}

NetworkManager::~NetworkManager() = default;

void NetworkManager::initKeyboard(const QString &device)
{
    if (m_keyboard.isOpen()) {
        qCWarning(logNetworkManager) << "Keyboard is already opened, ignore call.";
        return;
    }
    m_keyboard.setDevice(device);
    if (!m_keyboard.open()) {
        return;
    }
    QObject::connect(&m_keyboard, &libkeyboard::Keyboard::keyUp, this, &NetworkManager::keyUp);
    QObject::connect(&m_keyboard, &libkeyboard::Keyboard::keyDown, this, &NetworkManager::keyDown);
    QObject::connect(&m_keyboard, &libkeyboard::Keyboard::error, this, [](const QString &message) {
        qCWarning(logNetworkManager) << "Keyboard-error:" << message;
    });
}

void NetworkManager::keyDown(libkeyboard::Keyboard::Key key)
{
    m_chord.press(key);
}

void NetworkManager::keyUp(libkeyboard::Keyboard::Key key)
{
    const std::optional<bool> switchOn = m_chord.release(key);
    if (!switchOn) {
        return;
    }
    m_feedback.speak(*switchOn ? Sentence::WifiSwitchingOn : Sentence::WifiSwitchingOff);
    resetWiFi(*switchOn, false);
}

void NetworkManager::connmanServiceConnected()
{
    createManager();
    registerAgent();
    createWifiTechnology();
    if (m_settings->getWlanSupported()) {
        setUpWifi();
    }
    // A client's call may be queued already, and must find the services.
    m_manager->deliverAnnouncements();
}

void NetworkManager::createManager()
{
    if (m_manager) {
        return;
    }
    m_manager = new ConnmanManager(QDBusConnection::systemBus(), this);
    QObject::connect(m_manager, &ConnmanManager::interfaceStateChanged, this,
                     &NetworkManager::interfaceStateChanged);
    m_autoConnect.attach(m_manager);
}

void NetworkManager::registerAgent()
{
    if (!m_agent) {
        m_agent = new ConnmanAgent(this);
        m_agentAdaptor = new ConnmanAgentDBus(m_agent);
    }
    if (!m_manager->registerAgent(m_agentAdaptor->path())) {
        qCCritical(logNetworkManager)
            << "Unable to register ConnmanAgent,registering new networks will not be possible.";
    }
}

void NetworkManager::createWifiTechnology()
{
    if (m_wifi) {
        return;
    }
    m_wifi = new ConnmanTechnology(QDBusConnection::systemBus(), ConnmanNames::Wifi, this);
    m_lookup.attach(m_manager, m_wifi);
    m_wifiSwitch.attach(m_wifi);
}

void NetworkManager::setUpWifi()
{
    if (!m_wifiSwitch.waitForPowerState()) {
        return;
    }
    initMacAddress();
    m_settings->applyStoredWifiRegion();
    // Deliberately one more connection for each return of ConnMan.
    QObject::connect(m_settings, &NetworkSettings::initDone, &m_wifiSwitch, &WifiSwitch::powerCycle,
                     Qt::DirectConnection);
}

void NetworkManager::initMacAddress()
{
    // Without the bus the daemon is about to end.
    if (m_settings->initMacAddress() || !QDBusConnection::systemBus().isConnected()) {
        return;
    }
    qCCritical(logNetworkManager) << "Failed to set MAC address -> trying again!";
    m_settings->initMacAddress();
}

void NetworkManager::interfaceStateChanged(const QString &interface, ConnmanManager::InterfaceState state)
{
    if (interface == NetworkInterfaces::Wifi) {
        wifiStateChanged(state);
    } else if (interface == NetworkInterfaces::Ethernet) {
        ethernetStateChanged(state);
    } else {
        qCWarning(logNetworkManager) << "Unknown interface changed state:" << interface << state;
    }
}

void NetworkManager::wifiStateChanged(ConnmanManager::InterfaceState state)
{
    m_preferred.setLinkState(state);
    m_feedback.showWifi(state);
    if (state >= ConnmanManager::InterfaceState::Ready) {
        m_preferred.linkIsUp();
    }
}

void NetworkManager::ethernetStateChanged(ConnmanManager::InterfaceState state)
{
    m_feedback.showEthernet(state);
    if (state != ConnmanManager::InterfaceState::Ready) {
        return;
    }
    if (const Service service = m_lookup.byInterface(NetworkInterfaces::Ethernet, IfMissing::GiveUp)) {
        m_ethernetAnnouncement.start(service);
    }
}

void NetworkManager::tryConnectToPreferred()
{
    m_preferred.tryToJoin();
}

void NetworkManager::resetWiFi(bool enable, bool quiet)
{
    m_wifiSwitch.reset(enable, quiet);
}

bool NetworkManager::setWifiPower(bool on)
{
    return m_wifiSwitch.setPower(on);
}

bool NetworkManager::getWifiPower()
{
    return m_wifiSwitch.isOn();
}

QString NetworkManager::getHwAddress(const QString &name) const
{
    const QNetworkInterface interface = QNetworkInterface::interfaceFromName(name);
    if (!interface.isValid()) {
        qCCritical(logNetworkManager) << "No such network available:" << name;
        return {};
    }
    return interface.hardwareAddress();
}

QString NetworkManager::getWifiRegion() const
{
    return m_settings->getWifiRegion();
}

bool NetworkManager::setWifiRegion(const QString &region)
{
    if (!m_settings->setWifiRegion(region)) {
        return false;
    }
    emit regionChanged(region, m_settings->getLockRegion());
    return true;
}

bool NetworkManager::getLockRegion() const
{
    return m_settings->getLockRegion();
}

bool NetworkManager::setLockRegion(bool locked)
{
    if (!m_settings->setLockRegion(locked)) {
        return false;
    }
    emit regionChanged(m_settings->getWifiRegion(), locked);
    return true;
}

QString NetworkManager::getHostName() const
{
    return m_settings->getHostName();
}

bool NetworkManager::setHostName(const QString &hostName)
{
    return m_settings->setHostName(hostName);
}
