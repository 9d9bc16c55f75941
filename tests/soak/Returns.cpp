// ConnMan leaves the bus and comes back, again and again: nothing of it is left while it is away, and nothing
// more each time it is back.

#include "Examination.h"
#include "Figure.h"
#include "Run.h"
#include "TestDevice.h"
#include "Text.h"

using namespace test_support;

namespace soak {

namespace {

const QString cable = "ethernet_020000000100_cable"_s;
constexpr int warmUpReturns = 10;
constexpr int serviceCount = 10;

class Comings
{
public:
    explicit Comings(Run &run, TestDevice &device)
        : m_run(run)
        , m_device(device)
    {
    }

    void leaveAndReturn(int times)
    {
        for (int time = 0; time < times && goesOn(); ++time) {
            m_device.simulator.setPresent(connmanName, false);
            m_ghosts += networks().size();
            m_device.simulator.setPresent(connmanName, true);
            m_device.client.settle();
            m_device.simulator.clearCalls();
            ++m_returns;
        }
    }

    QVariantMap networks() { return m_device.client.call("networks").toMap(); }
    int returns() const { return m_returns; }
    int ghosts() const { return m_ghosts; }

private:
    bool goesOn() const { return m_device.daemon.isRunning() && !m_run.isOutOfTime(); }

    Run &m_run;
    TestDevice &m_device;
    int m_returns = 0;
    int m_ghosts = 0;
};

} // namespace

void returnsOfConnman(Run &run, const Figure &figure)
{
    TestDevice device;
    device.simulator.addServices(0, serviceCount);
    device.simulator.addService(cable);
    device.startWithoutRadio();

    Comings comings(run, device);
    const int warmUp = run.count() / warmUpReturns;
    comings.leaveAndReturn(warmUp);
    const qint64 before = settledMemoryKiB(device.daemon);
    comings.leaveAndReturn(run.count() - warmUp);
    const qint64 after = settledMemoryKiB(device.daemon);

    run.checkEqual("returns"_s, comings.returns(), run.count());
    run.checkEqual("networks listed while it was away"_s, comings.ghosts(), 0);
    run.checkGrowth("growth"_s, after - before, figure.limit);
    run.checkEqual("networks listed after the last return"_s, comings.networks().size(), serviceCount + 1);
    run.checkEqual("agents known to ConnMan"_s, device.simulator.agents().size(), 1);
    examineEnd(run, device.daemon);
}

} // namespace soak
