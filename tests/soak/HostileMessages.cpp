// Whatever arrives, from clients or from ConnMan: every call is answered, the daemon lives, and it keeps
// nothing of it.

#include "EventWait.h"
#include "Examination.h"
#include "Figure.h"
#include "HostileClient.h"
#include "HostileConnman.h"
#include "Run.h"
#include "TestDevice.h"
#include "Text.h"

using namespace test_support;

namespace soak {

namespace {

/// As many calls as ConnMan's and a client's connection may well have under way.
constexpr int mostWaiting = 32;

class Siege
{
public:
    Siege(Run &run, TestDevice &device)
        : m_run(run)
        , m_device(device)
        , m_client(device.bus.address(), run.random().generate())
        , m_connman(device.bus.address(), run.random().generate())
    {
    }

    bool begin() { return m_connman.begin(); }

    /// Sends that many messages, fewer if the daemon does not withstand them.
    void send(int count)
    {
        for (int sent = 0; sent < count && m_device.daemon.isRunning() && !m_run.isOutOfTime(); ++sent) {
            m_run.below(2) == 0 ? m_client.sendOne() : m_connman.sendOne();
            ++m_sent;
            waitForAnswers(mostWaiting);
        }
        waitForAnswers(0);
    }

    qint64 memoryWithoutServicesKiB()
    {
        m_connman.removeAllServices();
        m_device.client.settle();
        return settledMemoryKiB(m_device.daemon);
    }

    int sent() const { return m_sent; }
    bool isConnected() const { return m_client.isConnected() && m_connman.isConnected(); }
    int unanswered() const { return m_client.unanswered() + m_connman.unanswered(); }

private:
    int waiting() const { return m_client.waiting() + m_connman.waiting(); }

    /// For all but that many; those that do not come in time are waited for no more.
    void waitForAnswers(int atMost)
    {
        const auto isAnswered = [&] {
            return waiting() <= m_givenUp + atMost || !m_device.daemon.isRunning();
        };
        if (!waitUntil(isAnswered, patienceMs)) {
            m_givenUp = waiting();
        }
    }

    Run &m_run;
    TestDevice &m_device;
    HostileClient m_client;
    HostileConnman m_connman;
    int m_sent = 0;
    int m_givenUp = 0;
};

/// The real ConnMan is back: what it has is told again.
void checkThatItStillWorks(Run &run, TestDevice &device)
{
    const QString identifier = "ethernet_020000000100_cable"_s;
    device.simulator.setPresent(connmanName, true);
    device.simulator.addService(identifier);
    device.client.settle();
    const bool isListed = device.client.call("networks").toMap().contains(identifier);
    run.check("follows ConnMan afterwards"_s, isListed ? "yes"_s : "no"_s, "yes"_s, isListed);
}

} // namespace

void hostileMessages(Run &run, const Figure &figure)
{
    TestDevice device;
    device.startWithoutRadio();
    device.simulator.setPresent(connmanName, false);
    device.client.settle();
    {
        Siege siege(run, device);
        const int warmUp = run.count() / warmUpShare;
        siege.begin();
        siege.send(warmUp);
        const qint64 before = siege.memoryWithoutServicesKiB();
        siege.send(run.count() - warmUp);
        const qint64 after = siege.memoryWithoutServicesKiB();
        run.checkEqual("messages withstood"_s, siege.sent(), run.count());
        run.checkEqual("calls without an answer"_s, siege.unanswered(), 0);
        run.check("the hostile peers keep their connections"_s, siege.isConnected() ? "yes"_s : "no"_s,
                  "yes"_s, siege.isConnected());
        if (device.daemon.isRunning()) {
            run.checkGrowth("growth"_s, after - before, figure.limit);
        }
    }
    if (device.daemon.isRunning()) {
        checkThatItStillWorks(run, device);
    }
    examineEnd(run, device.daemon);
}

} // namespace soak
