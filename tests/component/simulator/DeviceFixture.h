#pragma once

#include "BusClient.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"
#include <memory>
#include <QObject>

namespace simulator_test {

/// What every test of the simulated device starts with: a bus, the simulator on it and a program that hears
/// it.
class DeviceFixture : public QObject
{
    Q_OBJECT

protected:
    std::unique_ptr<test_support::PrivateBus> m_bus;
    std::unique_ptr<BusClient> m_client;
    std::unique_ptr<test_support::SimulatorClient> m_simulator;

    /// After everything is there, and before it goes.
    virtual void arrive() {}
    virtual void leave() {}

private slots:
    void initTestCase();
    void init();
    void cleanup();
};

} // namespace simulator_test
