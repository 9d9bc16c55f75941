#pragma once

#include "ConnmanService.h"

#include <libled/Led.h>
#include <libtranslation/Sid.h>

#include <QStringList>

namespace libspeech::detail {
class Speech;
}

/// What the user hears and sees of the network: sentences of the speech service, one LED for each link.
class Feedback
{
public:
    using Sentence = libtranslation::Sid::NetworkManager;
    using State = ConnmanService::State;

    Feedback();

    /// Switches both LEDs off; one that is not there is a critical line, and harmless.
    void start();

    /// Does not wait for the speech; a speech service that is not there is a critical line.
    void speak(Sentence sentence, const QStringList &arguments = {}) const;
    void speakEthernetIpv4Address(const QString &address) const;
    void speakEthernetIpv6Address(const QString &address) const;

    void showEthernet(State state);
    void showWifi(State state);
    void showEthernetAddressKnown();
    void showEthernetWithoutAddress();
    /// The Wi-Fi LED is the one that shows a network which a client has disconnected, whatever its type.
    void showDisconnected();

private:
    Led m_ethernetLed;
    Led m_wifiLed;
    libspeech::detail::Speech *m_speech;
};
