#pragma once

#include <QObject>

#include <chrono>

class ConnmanTechnology;
class Feedback;
class PreferredNetwork;
class ServiceLookup;

/// Wi-Fi's power: on and off, over the bus or with ConnMan's command-line tool, and what follows some seconds
/// after it was switched on: a scan, and an attempt on the preferred network.
class WifiSwitch : public QObject
{
    Q_OBJECT

public:
    /// All three must outlive it.
    WifiSwitch(ServiceLookup &lookup, PreferredNetwork &preferred, const Feedback &feedback, QObject *parent);

    /// From now on ConnMan is asked; before, Wi-Fi is off and cannot be switched over the bus.
    void attach(ConnmanTechnology *wifi) { m_wifi = wifi; }

    /// Blocks until ConnMan tells whether Wi-Fi is on or off, for however long that takes; false when the bus
    /// has gone instead.
    bool waitForPowerState();
    bool isOn();

    /// Asks ConnMan over the bus.
    bool setPower(bool on);
    /// Runs "connmanctl", for 5 s at most. A failure is spoken and logged unless `quiet`.
    void reset(bool enable, bool quiet);
    /// Off and on again, if it is on, so that a new region takes effect. Where it is off although ConnMan was
    /// told to have it on, it is switched on 5 s later.
    void powerCycle();

signals:
    void powerChanged(bool on);

private:
    void switchOnIfLeftOff();
    void tryPreferredAfter(std::chrono::milliseconds delay, std::chrono::milliseconds pauseAfterScan);

    ServiceLookup &m_lookup;
    PreferredNetwork &m_preferred;
    const Feedback &m_feedback;
    ConnmanTechnology *m_wifi = nullptr;
};
