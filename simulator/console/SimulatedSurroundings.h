#pragma once

#include "SimulatorClient.h"
#include "Surroundings.h"

/// The simulated ConnMan, speech service and configuration manager.
class SimulatedSurroundings : public Surroundings
{
    Q_OBJECT
public:
    explicit SimulatedSurroundings(const QString &busAddress);

    bool isReady() const override { return m_simulator.isReady(); }
    void prepare(test_support::DaemonSandbox &sandbox) override;
    QVector<Command> commands(Feed &feed) override;
    QStringList scenery() const override;
    QString greeting() const override;

private:
    void addNetwork(Feed &feed, const QString &ssid, QVariantMap options);
    void switchConnman(const QString &what);

    test_support::SimulatorClient m_simulator;
};
