#pragma once

#include "Call.h"
#include "Service.h"
#include "TechnologyList.h"
#include <QObject>
#include <QVector>

namespace simulator {

class Connector;
class Discovery;
class ManagerState;
class ServiceList;
class Neighbourhood;
struct Timings;

/// Powers technologies on and off, scans, and so lets services come and go with what is around the device.
class Radio : public QObject
{
    Q_OBJECT
public:
    struct Parts
    {
        TechnologyList &technologies;
        ServiceList &services;
        ManagerState &manager;
        Discovery &discovery;
        Connector &connector;
        const Neighbourhood &neighbourhood;
        const Timings &timings;
    };
    explicit Radio(Parts parts, QObject *parent = nullptr);

    /// The client's Scan: answered when the scan is complete.
    void scan(const TechnologyPtr &technology, const Call &call);
    /// The client's SetProperty "Powered".
    void setPowered(const TechnologyPtr &technology, bool powered, const Call &call);

    /// Makes services of everything that is there by now, and takes away those of what is not.
    void lookAround();
    /// An access point has gone: so has its service, connected or not.
    void loseNetwork(const QString &identifier);
    /// The cable was plugged or unplugged.
    void cableChanged();
    /// As at ConnMan's start: Ethernet is there at once, Wi-Fi takes its time.
    void switchOnAtStart(const TechnologyPtr &technology);
    /// Ends scans and power changes without a word, as a crash does.
    void abandon();

private:
    void startScan();
    void completeScan();
    void switchOn(const TechnologyPtr &technology);
    void switchOff(const TechnologyPtr &technology);
    void removeServices(const QString &type);
    void remove(const ServicePtr &service);

    Parts m_parts;
    QVector<Call> m_scanners;
    bool m_isScanning = false;
    int m_life = 0; // counts abandon(), so that what was planned before does not happen
};

} // namespace simulator
