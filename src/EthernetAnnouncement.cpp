#include "EthernetAnnouncement.h"

#include "ConnmanNames.h"
#include "ConnmanService.h"
#include "Feedback.h"
#include "Latin1.h"

namespace {

using namespace std::chrono_literals;

constexpr auto Interval = 2000ms;
/// How many looks may be in vain before the user is told.
constexpr int Limit = 15;

constexpr QLatin1String LinkLocalPrefix = latin1("169.254");

} // namespace

EthernetAnnouncement::EthernetAnnouncement(Feedback &feedback, QObject *parent)
    : QObject(parent)
    , m_feedback(feedback)
{
    connect(&m_timer, &QTimer::timeout, this, &EthernetAnnouncement::look);
}

void EthernetAnnouncement::start(const std::shared_ptr<ConnmanService> &service)
{
    m_service = service;
    m_looksInVain = 0;
    m_timer.start(Interval);
}

void EthernetAnnouncement::look()
{
    const std::shared_ptr<ConnmanService> service = m_service;
    if (m_looksInVain == Limit) {
        m_feedback.speak(Feedback::Sentence::EthernetNoAddress);
        m_feedback.showEthernetWithoutAddress();
        finish();
    }
    const QString ipv4 = service->getIpv4ConfigurationValue(ConnmanNames::Address);
    const QString ipv6 = service->getIpv6ConfigurationValue(ConnmanNames::Address);
    if (!ipv4.isEmpty() && !ipv4.startsWith(LinkLocalPrefix)) {
        m_feedback.speakEthernetIpv4Address(ipv4);
    } else if (!ipv6.isEmpty()) {
        m_feedback.speakEthernetIpv6Address(ipv6);
    } else {
        ++m_looksInVain;
        return;
    }
    m_feedback.showEthernetAddressKnown();
    finish();
}

void EthernetAnnouncement::finish()
{
    m_timer.stop();
    m_service.reset();
}
