// How NetworkManager shows the interfaces' states: LEDs and speech.

#include "NetworkManager.h"

#include "NetworkManagerConstants.h"
#include "NetworkSettings.h"

#include <libspeech/Speech.h>
#include <libspeech/SpeechKeys.h>

#include <QUuid>

namespace {

using namespace std::chrono_literals;
using namespace NetworkManagerConstants;

/// The number under which the speech service knows this daemon's sentences.
constexpr int SpeechServiceId = 4;

constexpr auto EthernetPollInterval = 2000ms;
/// How many polls may find no usable address before the user is told.
constexpr int EthernetPollLimit = 15;

const QLatin1String LinkLocalPrefix("169.254");
const QLatin1String Ipv6Separator("::");
const QLatin1String SpokenIpv6Separator("double colon");

// Blink patterns, in milliseconds.
constexpr int FastPeriod = 500;
constexpr int SlowPeriod = 1000;
constexpr int Endlessly = -1;
constexpr int FailureDuration = 2000;

void showFailure(Led &led)
{
    led.blink(FastPeriod, FailureDuration);
}

} // namespace

void NetworkManager::interfaceStateChanged(const QString &interface, ConnmanManager::InterfaceState state)
{
    if (interface == WifiInterface) {
        wifiStateChanged(state);
    } else if (interface == EthernetInterface) {
        ethernetStateChanged(state);
    } else {
        qCWarning(logNetworkManager) << "Unknown interface changed state:" << interface << state;
    }
}

void NetworkManager::wifiStateChanged(ConnmanManager::InterfaceState state)
{
    using State = ConnmanManager::InterfaceState;
    m_wifiState = state;
    switch (state) {
    case State::Association:
        m_wifiLed.blink(FastPeriod, Endlessly);
        break;
    case State::Configuration:
        m_wifiLed.blink(SlowPeriod, Endlessly);
        break;
    case State::Ready:
    case State::Online: {
        const QString preferred = m_settings->getPreferedWifi();
        findWifiServiceByName(preferred, false);
        m_wifiLed.on();
        announceReconnection(preferred);
        break;
    }
    case State::Failure:
        showFailure(m_wifiLed);
        break;
    case State::Unknown:
    case State::Disconnect:
    case State::Idle:
        m_wifiLed.off();
        break;
    }
}

void NetworkManager::ethernetStateChanged(ConnmanManager::InterfaceState state)
{
    using State = ConnmanManager::InterfaceState;
    switch (state) {
    case State::Configuration:
        m_ethernetLed.blink(SlowPeriod, Endlessly);
        break;
    case State::Online:
        m_ethernetLed.on();
        break;
    case State::Ready:
        pollEthernetAddress();
        break;
    case State::Failure:
        showFailure(m_ethernetLed);
        break;
    case State::Idle:
        break;
    case State::Unknown:
    case State::Disconnect:
    case State::Association:
        m_ethernetLed.off();
        break;
    }
}

void NetworkManager::pollEthernetAddress()
{
    const Service service = findServiceByInterface(EthernetInterface, false);
    if (!service) {
        return;
    }
    m_ethernetTimer.start(EthernetPollInterval);
    m_ethernetPolls = 0;
    m_ethernetAnnounced = false;
    // One more connection for each ready report; once announced, none of them speaks.
    QObject::connect(&m_ethernetTimer, &QTimer::timeout, this,
                     [this, service] { announceEthernetAddress(*service); });
}

void NetworkManager::announceEthernetAddress(const ConnmanService &service)
{
    if (m_ethernetAnnounced) {
        return;
    }
    if (m_ethernetPolls == EthernetPollLimit) {
        speak(Sentence::EthernetNoAddress);
        showFailure(m_ethernetLed);
        m_ethernetTimer.stop();
    }
    const QString ipv4 = service.getIpv4ConfigurationValue(QStringLiteral("Address"));
    const QString ipv6 = service.getIpv6ConfigurationValue(QStringLiteral("Address"));
    if (!ipv4.isEmpty() && !ipv4.startsWith(LinkLocalPrefix)) {
        speak(Sentence::EthernetIpv4Address, ipv4.split(QLatin1Char('.')));
        ethernetAddressSpoken();
    } else if (ipv6.isEmpty()) {
        ++m_ethernetPolls;
    } else {
        QString spoken = ipv6;
        speak(Sentence::EthernetIpv6Address, {spoken.replace(Ipv6Separator, SpokenIpv6Separator)});
        ethernetAddressSpoken();
    }
}

void NetworkManager::ethernetAddressSpoken()
{
    m_ethernetLed.on();
    m_ethernetAnnounced = true;
    m_ethernetTimer.stop();
}

void NetworkManager::speak(const Sentence &sentence, const QStringList &arguments) const
{
    QVariantMap request{{libspeech::ServiceId, SpeechServiceId},
                        {libspeech::SentenceId, static_cast<int>(sentence)}};
    if (!arguments.isEmpty()) {
        request.insert(libspeech::Arguments, arguments);
    }
    if (m_speech->speakFromId(request).isNull()) {
        qCCritical(logNetworkManager) << "ERROR: Failed to queue speech-request.";
    }
}
