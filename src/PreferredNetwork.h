#pragma once

#include "ConnmanService.h"

#include <QObject>

#include <memory>

class Feedback;
class NetworkSettings;
class ServiceLookup;

/// The one Wi-Fi network that the daemon joins by itself: which it is, when it may be tried, and that the
/// user hears of its return after Wi-Fi was switched on.
class PreferredNetwork : public QObject
{
    Q_OBJECT

public:
    using Service = std::shared_ptr<ConnmanService>;

    /// While one lives, an operation waits for ConnMan to connect: attempts that become due are dropped, for
    /// they would end what the user has chosen.
    class Hold
    {
    public:
        explicit Hold(PreferredNetwork &preferred);
        ~Hold();
        Hold(const Hold &) = delete;
        Hold &operator=(const Hold &) = delete;

    private:
        PreferredNetwork &m_preferred;
    };

    /// All three must outlive it.
    PreferredNetwork(NetworkSettings &settings, ServiceLookup &lookup, const Feedback &feedback,
                     QObject *parent);

    /// Tries once to join it, if Wi-Fi is idle; waits for ConnMan as ConnmanService::connect() does. Ends
    /// when an operation comes between.
    void tryToJoin();
    /// Whether an attempt that is due now has to be dropped.
    bool isOnHold() const { return m_holds > 0; }

    /// "wlan0" has reported its state.
    void setLinkState(ConnmanService::State state);
    /// "wlan0" is up: to the user, the preferred network is back.
    void linkIsUp();
    /// From now on the next return is announced.
    void wifiWasSwitchedOn() { m_returnIsNews = true; }
    /// A client has connected that network: it is the preferred one from now on, and its joining is told
    /// already.
    void choose(const Service &service);

signals:
    /// It has returned after Wi-Fi was switched on.
    void returned(const QString &name);

private:
    bool isLinkIdle() const;
    void announceReturn(const QString &name);

    NetworkSettings &m_settings;
    ServiceLookup &m_lookup;
    const Feedback &m_feedback;
    /// Unknown until "wlan0" reports: then it may be tried too.
    ConnmanService::State m_linkState = ConnmanService::State::Unknown;
    bool m_returnIsNews = false;
    int m_holds = 0;
    /// Those that have ended included.
    int m_holdsSoFar = 0;
};
