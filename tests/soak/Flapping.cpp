// Services and the cable come and go: the daemon keeps nothing of what is gone, and asks once for what is
// new.

#include "Cable.h"
#include "EventWait.h"
#include "Examination.h"
#include "Figure.h"
#include "Run.h"
#include "TestDevice.h"
#include "Text.h"

#include <functional>

using namespace test_support;

namespace soak {

namespace {

constexpr int warmUpRounds = 30;
/// So many different services come for each time that one of them returns.
constexpr int strangersPerReturn = 5;
/// Between two looks at whether the daemon keeps up.
constexpr int roundsAtOnce = 5;

QString strangersIdentifier(int number)
{
    return "wifi_020000000200_%1_managed_psk"_s.arg(static_cast<uint>(number), 8, 16, QLatin1Char('0'));
}

using Round = std::function<void(int number)>;

class Flapping
{
public:
    Flapping(Run &run, const Figure &figure, TestDevice &device)
        : m_run(run)
        , m_figure(figure)
        , m_device(device)
    {
    }

    /// Makes that many rounds and adds to the table by how much the daemon has grown since the last look.
    void measure(const QString &what, int count, const Round &round)
    {
        const int made = repeat(0, count, round);
        m_run.checkEqual(what, made, count);
        const qint64 before = m_memoryKiB;
        look();
        m_run.checkGrowth(what + ", growth"_s, m_memoryKiB - before, m_figure.limit);
    }

    void warmUp(const Round &round) { repeat(-warmUpRounds, 0, round); }
    void look() { m_memoryKiB = settledMemoryKiB(m_device.daemon); }

    void comeAndGo(const QString &identifier)
    {
        m_device.simulator.addService(identifier);
        m_device.simulator.removeService(identifier);
    }

    /// How often ConnMan is asked for the properties of a service whose state changes.
    qint64 questionsAfterAStateChange(const QString &identifier)
    {
        m_device.simulator.clearCalls();
        m_device.simulator.setServiceProperty(identifier, "State"_s, "association"_s);
        m_device.client.settle();
        return m_device.simulator
            .callsStartingWith("/net/connman/service/%1 net.connman.Service.GetProperties"_s.arg(identifier))
            .size();
    }

private:
    int repeat(int first, int end, const Round &round)
    {
        int number = first;
        for (; number < end && m_device.daemon.isRunning() && !m_run.isOutOfTime(); ++number) {
            round(number);
            if (number % roundsAtOnce == 0) {
                m_device.client.settle();
                m_device.simulator.clearCalls();
            }
        }
        m_device.client.settle();
        return number - first;
    }

    Run &m_run;
    const Figure &m_figure;
    TestDevice &m_device;
    qint64 m_memoryKiB = 0;
};

} // namespace

void flappingServices(Run &run, const Figure &figure)
{
    TestDevice device;
    device.startWithoutRadio();
    Flapping flapping(run, figure, device);

    Cable cable(device);
    const Round returning = [&](int) { flapping.comeAndGo(flapper); };
    const Round stranger = [&](int number) { flapping.comeAndGo(strangersIdentifier(number)); };
    const Round replug = [&](int) {
        cable.plugIn();
        cable.pullOut();
    };
    for (const Round &round : {returning, stranger, replug}) {
        flapping.warmUp(round);
    }
    flapping.look();

    flapping.measure("returns of one service"_s, run.count(), returning);
    device.simulator.addService(flapper);
    device.client.settle();
    run.checkEqual("GetProperties for its next change of state"_s,
                   flapping.questionsAfterAStateChange(flapper), 1);
    device.simulator.removeService(flapper);
    flapping.measure("different services"_s, run.count() * strangersPerReturn, stranger);
    flapping.measure("replugs of the cable"_s, run.count(), replug);
    examineEnd(run, device.daemon);
}

} // namespace soak
