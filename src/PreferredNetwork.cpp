#include "PreferredNetwork.h"

#include "ConnmanNames.h"
#include "Feedback.h"
#include "NetworkInterfaces.h"
#include "NetworkManagerLog.h"
#include "NetworkSettings.h"
#include "ServiceLookup.h"

PreferredNetwork::Hold::Hold(PreferredNetwork &preferred)
    : m_preferred(preferred)
{
    ++m_preferred.m_holds;
    ++m_preferred.m_holdsSoFar;
}

PreferredNetwork::Hold::~Hold()
{
    --m_preferred.m_holds;
}

PreferredNetwork::PreferredNetwork(NetworkSettings &settings, ServiceLookup &lookup, const Feedback &feedback,
                                   QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_lookup(lookup)
    , m_feedback(feedback)
{
}

void PreferredNetwork::tryToJoin()
{
    const QString preferred = m_settings.getPreferedWifi();
    qCDebug(logNetworkManager) << "Trying to connect to prefered network" << preferred;
    if (preferred.isEmpty()) {
        qCDebug(logNetworkManager) << "No prefered network is registered.";
        return;
    }
    if (isOnHold()) {
        qCDebug(logNetworkManager) << "Prefered network isn't tried, an operation waits for its connection.";
        return;
    }
    if (!isLinkIdle()) {
        qCDebug(logNetworkManager) << "Interface" << NetworkInterfaces::Wifi.data() << "isn't Idle, is"
                                   << m_linkState;
        return;
    }
    const QList<Service> all = m_lookup.services();
    for (const Service &service : all) {
        const QString type = service->type();
        if (type != ConnmanNames::Wifi) {
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
                                         << NetworkInterfaces::Wifi.data() << "interface is?!?";
            return;
        }
        const int holdsBefore = m_holdsSoFar;
        if (service->connect()) {
            announceReturn(preferred);
            return;
        }
        qCWarning(logNetworkManager).nospace()
            << "Failed to connect to prefered network " << preferred << " (" << service->path() << ")";
        if (m_holdsSoFar != holdsBefore || m_settings.getPreferedWifi() != preferred) {
            qCDebug(logNetworkManager) << "No other prefered network is tried, an operation came between.";
            return;
        }
    }
}

void PreferredNetwork::setLinkState(ConnmanService::State state)
{
    m_linkState = state;
}

void PreferredNetwork::linkIsUp()
{
    announceReturn(m_settings.getPreferedWifi());
}

void PreferredNetwork::choose(const Service &service)
{
    m_returnIsNews = false;
    m_settings.setPreferedWifi(service);
}

bool PreferredNetwork::isLinkIdle() const
{
    return m_linkState == ConnmanService::State::Idle || m_linkState == ConnmanService::State::Unknown;
}

void PreferredNetwork::announceReturn(const QString &name)
{
    if (!m_returnIsNews) {
        return;
    }
    m_returnIsNews = false;
    m_feedback.speak(Feedback::Sentence::WifiReconnected);
    emit returned(name);
}
