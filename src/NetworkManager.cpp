// NetworkManager's construction, its keyboard, attaching to ConnMan, and Wi-Fi power.

#include "NetworkManager.h"

#include "Command.h"
#include "ConnmanAgentDBus.h"
#include "ConnmanNames.h"
#include "ConnmanTechnology.h"
#include "ConnmanTypes.h"
#include "NetworkManagerConstants.h"
#include "NetworkSettings.h"

#include <libspeech/Speech.h>
#include <libtactora/DBusService.h>
#include <libtactora/Singleton.h>

#include <QDBusConnection>
#include <QNetworkInterface>
#include <QThread>

Q_LOGGING_CATEGORY(logNetworkManager, "NetworkManager", QtCriticalMsg)

namespace {

using namespace std::chrono_literals;
using namespace NetworkManagerConstants;

/// How long "connmanctl" may take.
constexpr auto ConnmanctlTimeout = 5000ms;
/// How often the Wi-Fi technology is asked until it knows its power state.
constexpr unsigned long PowerStatePollMs = 250;
/// How long Wi-Fi stays off when it is switched off and on for a new region.
constexpr unsigned long PowerCyclePauseMs = 500;

// Between switching Wi-Fi on and the scan, and between the scan and joining the preferred network.
constexpr auto ScanDelayAfterConnmanctl = 5000ms;
constexpr auto PauseAfterConnmanctlScan = 500ms;
constexpr auto ScanDelayAfterPowerOn = 2000ms;
constexpr auto PauseAfterPowerOnScan = 250ms;

} // namespace

NetworkManager::NetworkManager(QObject *parent)
    : QObject(parent)
    , m_ethernetLed(EthernetLed, nullptr)
    , m_wifiLed(WifiLed, nullptr)
    , m_connmanWatcher(std::make_unique<libtactora::DBusService>(QDBusConnection::systemBus(),
                                                                 ConnmanNames::service(), this))
    , m_settings(new NetworkSettings(this))
    , m_speech(libtactora::Singleton<libspeech::detail::Speech>::instance())
    , m_keyboard(QString())
{
    registerConnmanTypes();
    qRegisterMetaType<ConnmanManager::InterfaceState>("ConnmanManager::InterfaceState");
    QObject::connect(m_connmanWatcher.get(), &libtactora::DBusService::connected, this,
                     &NetworkManager::connmanServiceConnected);
    QObject::connect(
        this, &NetworkManager::powerChanged, this,
        [this](bool on) {
            if (on) {
                m_poweredOn = true;
            }
        },
        Qt::DirectConnection);
    initLed(m_ethernetLed, "Eth-led is invalid.");
    initLed(m_wifiLed, "Wlan-led is invalid.");
}

NetworkManager::~NetworkManager() = default;

void NetworkManager::initLed(Led &led, const char *complaint)
{
    if (led.isValid()) {
        led.off();
    } else {
        qCCritical(logNetworkManager) << complaint;
    }
}

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

void NetworkManager::connmanServiceConnected()
{
    createConnmanManager();
    registerAgent();
    if (!m_wifi) {
        m_wifi = new ConnmanTechnology(QDBusConnection::systemBus(), WifiTechnology, this);
    }
    if (!m_settings->getWlanSupported()) {
        return;
    }
    waitForWifiPowerState();
    initMacAddress();
    m_settings->applyStoredWifiRegion();
    // Deliberately one more connection for each return of ConnMan.
    QObject::connect(m_settings, &NetworkSettings::initDone, this, &NetworkManager::powerCycleWifi,
                     Qt::DirectConnection);
}

void NetworkManager::createConnmanManager()
{
    if (m_manager) {
        return;
    }
    m_manager = new ConnmanManager(QDBusConnection::systemBus(), this);
    QObject::connect(m_manager, &ConnmanManager::interfaceStateChanged, this,
                     &NetworkManager::interfaceStateChanged);
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

void NetworkManager::waitForWifiPowerState() const
{
    while (m_wifi->isPowered() < 0) {
        QThread::msleep(PowerStatePollMs);
    }
}

void NetworkManager::initMacAddress() const
{
    if (m_settings->initMacAddress()) {
        return;
    }
    qCCritical(logNetworkManager) << "Failed to set MAC address -> trying again!";
    m_settings->initMacAddress();
}

void NetworkManager::powerCycleWifi()
{
    if (m_wifi->isPowered() <= 0) {
        return;
    }
    resetWiFi(false, false);
    QThread::msleep(PowerCyclePauseMs);
    resetWiFi(true, false);
}

void NetworkManager::resetWiFi(bool enable, bool quiet)
{
    const QLatin1String word(enable ? "enable" : "disable");
    QProcess connmanctl;
    connmanctl.start(QStringLiteral("connmanctl"), {QStringLiteral("%1").arg(word), WifiTechnology},
                     QIODevice::ReadWrite);
    if (Command::waitForEnd(connmanctl, ConnmanctlTimeout)) {
        emit powerChanged(enable);
        if (enable) {
            tryPreferredAfter(ScanDelayAfterConnmanctl, PauseAfterConnmanctlScan);
        }
    } else if (!quiet) {
        speak(Sentence::WifiSwitchFailed);
        qCCritical(logNetworkManager) << "Wifi reset failed!";
    }
}

bool NetworkManager::setWifiPower(bool on)
{
    if (!m_wifi || !m_wifi->setPowered(on)) {
        return false;
    }
    emit powerChanged(on);
    if (on) {
        tryPreferredAfter(ScanDelayAfterPowerOn, PauseAfterPowerOnScan);
    }
    return true;
}

void NetworkManager::tryPreferredAfter(std::chrono::milliseconds delay,
                                       std::chrono::milliseconds pauseAfterScan)
{
    QTimer::singleShot(delay, Qt::CoarseTimer, this, [this, pauseAfterScan] {
        scanWifi(pauseAfterScan);
        tryConnectToPreferred();
    });
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
