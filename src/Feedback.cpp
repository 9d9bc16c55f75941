#include "Feedback.h"

#include "Latin1.h"
#include "NetworkManagerLog.h"

#include <libspeech/Speech.h>
#include <libspeech/SpeechKeys.h>
#include <libtactora/Singleton.h>

#include <QUuid>
#include <QVariantMap>

#include <array>

namespace {

using State = Feedback::State;

/// The number under which the speech service knows this daemon's sentences.
constexpr int SpeechServiceId = 4;

constexpr QLatin1String Ipv6Separator = latin1("::");
constexpr QLatin1String SpokenIpv6Separator = latin1("double colon");

enum class Light { Unchanged, Off, On, FastBlinking, SlowBlinking, ShortBlinking };

struct StateLights
{
    State state;
    Light ethernet;
    Light wifi;
};

// The links differ on purpose: idle is no news of a cable, and a cable does not associate. A ready cable is
// not lit before its address is known.
constexpr std::array<StateLights, 8> Lights{{
    {State::Unknown, Light::Off, Light::Off},
    {State::Disconnect, Light::Off, Light::Off},
    {State::Failure, Light::ShortBlinking, Light::ShortBlinking},
    {State::Idle, Light::Unchanged, Light::Off},
    {State::Association, Light::Off, Light::FastBlinking},
    {State::Configuration, Light::SlowBlinking, Light::SlowBlinking},
    {State::Ready, Light::Unchanged, Light::On},
    {State::Online, Light::On, Light::On},
}};

const StateLights &lightsOf(State state)
{
    return Lights.at(static_cast<std::size_t>(state));
}

// In milliseconds.
constexpr int FastPeriod = 500;
constexpr int SlowPeriod = 1000;
constexpr int Endlessly = -1;
constexpr int Shortly = 2000;

void show(Led &led, Light light)
{
    switch (light) {
    case Light::Unchanged:
        break;
    case Light::Off:
        led.off();
        break;
    case Light::On:
        led.on();
        break;
    case Light::FastBlinking:
        led.blink(FastPeriod, Endlessly);
        break;
    case Light::SlowBlinking:
        led.blink(SlowPeriod, Endlessly);
        break;
    case Light::ShortBlinking:
        led.blink(FastPeriod, Shortly);
        break;
    }
}

void switchOff(Led &led, const char *complaint)
{
    if (led.isValid()) {
        led.off();
    } else {
        qCCritical(logNetworkManager) << complaint;
    }
}

} // namespace

Feedback::Feedback()
    : m_ethernetLed(QStringLiteral("led10"), nullptr)
    , m_wifiLed(QStringLiteral("led8"), nullptr)
    , m_speech(libtactora::Singleton<libspeech::detail::Speech>::instance())
{
}

void Feedback::start()
{
    switchOff(m_ethernetLed, "Eth-led is invalid.");
    switchOff(m_wifiLed, "Wlan-led is invalid.");
}

void Feedback::speak(Sentence sentence, const QStringList &arguments) const
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

void Feedback::speakEthernetIpv4Address(const QString &address) const
{
    speak(Sentence::EthernetIpv4Address, address.split(QLatin1Char('.')));
}

void Feedback::speakEthernetIpv6Address(const QString &address) const
{
    QString spoken = address;
    speak(Sentence::EthernetIpv6Address, {spoken.replace(Ipv6Separator, SpokenIpv6Separator)});
}

void Feedback::showEthernet(State state)
{
    show(m_ethernetLed, lightsOf(state).ethernet);
}

void Feedback::showWifi(State state)
{
    show(m_wifiLed, lightsOf(state).wifi);
}

void Feedback::showEthernetAddressKnown()
{
    show(m_ethernetLed, Light::On);
}

void Feedback::showEthernetWithoutAddress()
{
    show(m_ethernetLed, Light::ShortBlinking);
}

void Feedback::showDisconnected()
{
    show(m_wifiLed, Light::Off);
}
