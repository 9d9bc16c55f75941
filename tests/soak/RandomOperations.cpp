// Random calls while ConnMan fails in every way it can: each gets an answer, and when ConnMan is well again
// nothing is left of it.

#include "EventWait.h"
#include "Examination.h"
#include "FailingConnman.h"
#include "Figure.h"
#include "RandomCall.h"
#include "RawPeer.h"
#include "Run.h"
#include "TestDevice.h"
#include "Text.h"

#include <vector>

using namespace test_support;

namespace soak {

namespace {

constexpr int callsUnderWay = 6;
constexpr int callsPerFailure = 25;
/// How long no call is answered before ConnMan gives up being silent.
constexpr int silenceMs = 500;

std::vector<QByteArray> addNetworks(SimulatorClient &simulator)
{
    const std::vector<QVariantMap> networks{
        {{"ssid"_s, "Cafe"_s}, {"security"_s, "none"_s}},
        {{"ssid"_s, "Home"_s}, {"passphrase"_s, "right passphrase"_s}},
        {{"ssid"_s, "Office"_s}, {"security"_s, "wps"_s}, {"pin"_s, "12345670"_s}},
        {{"ssid"_s, "Corp"_s}, {"security"_s, "ieee8021x"_s}},
        {{"ssid"_s, "Secret"_s}, {"hidden"_s, true}},
    };
    std::vector<QByteArray> identifiers;
    identifiers.reserve(networks.size() + 1);
    for (const QVariantMap &network : networks) {
        identifiers.push_back(simulator.addNetwork(network).toLatin1());
    }
    simulator.setCable(true);
    identifiers.emplace_back("ethernet_020000000100_cable");
    return identifiers;
}

class Operations
{
public:
    Operations(Run &run, TestDevice &device)
        : m_run(run)
        , m_device(device)
        , m_identifiers(addNetworks(device.simulator))
        , m_client(device.bus.address())
        , m_connman(run, device)
    {
    }

    void make(int count)
    {
        const int end = m_made + count;
        for (; m_made < end && goesOn(); ++m_made) {
            if (m_made % callsPerFailure == 0) {
                m_connman.failOtherwise();
                m_device.simulator.clearCalls();
            }
            const RandomCall call = randomCall(m_run.random(), m_identifiers);
            m_client.call(daemonName, {"/", daemonName, call.method}, call.arguments);
            answerAllBut(callsUnderWay);
        }
        m_connman.recover();
        answerAllBut(0);
    }

    const FailingConnman &connman() const { return m_connman; }
    int made() const { return m_made; }
    int unanswered() const { return m_client.waiting() + m_client.lost(); }

private:
    bool goesOn() const { return m_device.daemon.isRunning() && !m_run.isOutOfTime(); }

    void answerAllBut(int count)
    {
        const auto isAnswered = [this, count] { return m_client.waiting() <= count; };
        while (goesOn() && !waitUntil(isAnswered, silenceMs)) {
            m_connman.recover();
        }
    }

    Run &m_run;
    TestDevice &m_device;
    std::vector<QByteArray> m_identifiers;
    RawPeer m_client;
    FailingConnman m_connman;
    int m_made = 0;
};

/// Of the Wi-Fi networks that ConnMan remembers, those that it may not join by itself.
int withoutAutoConnect(SimulatorClient &simulator)
{
    int count = 0;
    for (const QString &identifier : simulator.services()) {
        const QVariantMap properties = simulator.serviceProperties(identifier);
        const bool isRemembered =
            properties.value("Type"_s) == "wifi"_s && properties.value("Favorite"_s).toBool();
        count += isRemembered && !properties.value("AutoConnect"_s).toBool() ? 1 : 0;
    }
    return count;
}

void checkThatAllIsWellAgain(Run &run, TestDevice &device)
{
    device.client.call("setWifiPower", true);
    // Each connect switches it on again, so before one.
    run.checkEqual("networks left without AutoConnect"_s, withoutAutoConnect(device.simulator), 0);
    const bool connected = device.client.call("connect", cafe).toBool();
    run.check("connects afterwards"_s, connected ? "yes"_s : "no"_s, "yes"_s, connected);
    const QVariant path = QVariant::fromValue(QDBusObjectPath("/net/connman/service/"_s + cafe));
    const QString refusal =
        device.simulator.callAgent("RequestInput"_s, {path, QVariantMap{{"Passphrase"_s, QVariantMap()}}})
            .error;
    run.check("agent without credentials says"_s, refusal, "No request-type setup."_s,
              refusal.endsWith(": No request-type setup."_s));
}

} // namespace

void randomOperations(Run &run, const Figure &figure)
{
    TestDevice device;
    device.startWithoutRadio();
    Operations operations(run, device);

    const int warmUp = run.count() / warmUpShare;
    operations.make(warmUp);
    const qint64 before = settledMemoryKiB(device.daemon);
    operations.make(run.count() - warmUp);
    const qint64 after = settledMemoryKiB(device.daemon);

    run.checkEqual("calls"_s, operations.made(), run.count());
    run.checkEqual("calls without an answer"_s, operations.unanswered(), 0);
    const int happened = operations.connman().happened();
    run.check("injected failures that happened"_s,
              "%1 of %2"_s.arg(happened).arg(operations.connman().injected()), "some"_s, happened > 0);
    run.checkGrowth("growth"_s, after - before, figure.limit);
    if (device.daemon.isRunning()) {
        checkThatAllIsWellAgain(run, device);
    }
    examineEnd(run, device.daemon);
}

} // namespace soak
