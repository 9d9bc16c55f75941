#include "DeviceFixture.h"

#include "ConnmanWire.h"
#include "Text.h"
#include <QTest>

namespace simulator_test {

void DeviceFixture::initTestCase()
{
    simulator::registerWireTypes();
}

void DeviceFixture::init()
{
    m_bus = std::make_unique<test_support::PrivateBus>();
    m_client = std::make_unique<BusClient>(m_bus->address());
    m_simulator = std::make_unique<test_support::SimulatorClient>(m_bus->address());
    QVERIFY(m_simulator->isReady());
    QVERIFY(m_client->waitForSignal("TechnologyAdded(objectpath \"/net/connman/technology/wifi\""_s));
    m_client->clear();
    arrive();
}

void DeviceFixture::cleanup()
{
    leave();
    m_simulator.reset();
    m_client.reset();
    m_bus.reset();
}

} // namespace simulator_test
