#include "WifiSwitch.h"

#include "Command.h"
#include "ConnmanNames.h"
#include "ConnmanTechnology.h"
#include "Feedback.h"
#include "NetworkManagerLog.h"
#include "PreferredNetwork.h"
#include "ServiceLookup.h"

#include <QDBusConnection>
#include <QSettings>
#include <QThread>
#include <QTimer>

namespace {

using namespace std::chrono_literals;

/// How long "connmanctl" may take.
constexpr auto ConnmanctlTimeout = 5000ms;
/// How often the Wi-Fi technology is asked until it knows its power state.
constexpr unsigned long PowerStatePollMs = 250;
/// How long Wi-Fi stays off in a power cycle.
constexpr unsigned long PowerCyclePauseMs = 500;
/// Between a start with Wi-Fi off and a second look: by then ConnMan has given up what it could not do, which
/// takes it four seconds, and listens again.
constexpr auto SecondLookDelay = 5000ms;

// Between switching Wi-Fi on and the scan, and between the scan and joining the preferred network.
constexpr auto ScanDelayAfterConnmanctl = 5000ms;
constexpr auto PauseAfterConnmanctlScan = 500ms;
constexpr auto ScanDelayAfterPowerOn = 2000ms;
constexpr auto PauseAfterPowerOnScan = 250ms;

/// What ConnMan was told last, as it remembers it itself; on the bus it only tells what is.
bool isMeantToBeOn()
{
    const QSettings connman(QStringLiteral("/var/lib/connman/settings"), QSettings::IniFormat);
    return connman.value(QStringLiteral("WiFi/Enable")).toBool() &&
           !connman.value(QStringLiteral("global/OfflineMode")).toBool();
}

} // namespace

WifiSwitch::WifiSwitch(ServiceLookup &lookup, PreferredNetwork &preferred, const Feedback &feedback,
                       QObject *parent)
    : QObject(parent)
    , m_lookup(lookup)
    , m_preferred(preferred)
    , m_feedback(feedback)
{
}

bool WifiSwitch::waitForPowerState()
{
    while (m_wifi->isPowered() < 0) {
        if (!QDBusConnection::systemBus().isConnected()) {
            return false;
        }
        QThread::msleep(PowerStatePollMs);
    }
    return true;
}

bool WifiSwitch::isOn()
{
    return m_wifi != nullptr && m_wifi->isPowered() > 0;
}

bool WifiSwitch::setPower(bool on)
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

void WifiSwitch::reset(bool enable, bool quiet)
{
    const QLatin1String word(enable ? "enable" : "disable");
    const Command::ProcessPointer connmanctl =
        Command::start(QStringLiteral("connmanctl"), {QStringLiteral("%1").arg(word), ConnmanNames::Wifi});
    if (Command::waitForEnd(*connmanctl, ConnmanctlTimeout)) {
        emit powerChanged(enable);
        if (enable) {
            tryPreferredAfter(ScanDelayAfterConnmanctl, PauseAfterConnmanctlScan);
        }
    } else if (!quiet) {
        m_feedback.speak(Feedback::Sentence::WifiSwitchFailed);
        qCCritical(logNetworkManager) << "Wifi reset failed!";
    }
}

void WifiSwitch::powerCycle()
{
    if (!isOn()) {
        QTimer::singleShot(SecondLookDelay, Qt::CoarseTimer, this, &WifiSwitch::switchOnIfLeftOff);
        return;
    }
    reset(false, false);
    QThread::msleep(PowerCyclePauseMs);
    reset(true, false);
}

// The interface goes down to get its address. A ConnMan that is just switching Wi-Fi on then fails, and never
// tries again: after a power-on the printer would stay without its network.
void WifiSwitch::switchOnIfLeftOff()
{
    if (isMeantToBeOn() && !isOn()) {
        setPower(true);
    }
}

void WifiSwitch::tryPreferredAfter(std::chrono::milliseconds delay, std::chrono::milliseconds pauseAfterScan)
{
    QTimer::singleShot(delay, Qt::CoarseTimer, this, [this, pauseAfterScan] {
        // On hold the scan would be in the way too.
        if (!m_preferred.isOnHold()) {
            m_lookup.scanAndSettle(pauseAfterScan);
        }
        m_preferred.tryToJoin();
    });
}
