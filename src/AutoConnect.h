#pragma once

#include <memory>

#include <QObject>
#include <QSet>
#include <QString>

class ConnmanManager;
class ConnmanService;
class ServiceLookup;

/// ConnMan's own joining of the Wi-Fi networks that it remembers. ConnMan keeps for each of them whether it
/// may, beyond its own end: one that was switched off and has gone by the time it is to be switched on is
/// when it comes back.
class AutoConnect : public QObject
{
    Q_OBJECT

public:
    /// `lookup` must outlive it.
    AutoConnect(const ServiceLookup &lookup, QObject *parent);

    /// From now on networks that come back are noticed.
    void attach(const ConnmanManager *manager);

    /// While it is off ConnMan joins none of the networks that there were when it was switched off.
    void switchOff();
    /// For all networks that there are, also within the off of somebody else.
    void switchOn();

private:
    using Service = std::shared_ptr<ConnmanService>;

    void set(bool on);
    void set(const Service &service, bool on);
    void serviceAdded(const Service &service);

    const ServiceLookup &m_lookup;
    /// How many have switched it off and not on again.
    int m_users = 0;
    /// The identifiers of the networks for which ConnMan has taken "off" but not yet "on".
    QSet<QString> m_switchedOff;
};
