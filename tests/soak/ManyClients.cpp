// Many clients at once: each gets its own answers.

#include "EventWait.h"
#include "Examination.h"
#include "Figure.h"
#include "Run.h"
#include "TestDevice.h"
#include "Text.h"

#include <memory>
#include <vector>

using namespace test_support;

namespace soak {

namespace {

constexpr int clientCount = 50;
/// Each of which every connect() switches automatic connections of.
constexpr int wifiCount = 10;
/// How long each Connect waits, so that the others' calls are served inside it.
constexpr int connectMs = 20;

/// A client, and the service that only it asks for.
class Customer
{
public:
    Customer(TestDevice &device, int number)
        : m_client(device.bus.address())
        , m_identifier(
              (number < wifiCount ? "wifi_0200000002%1_managed_none"_s : "ethernet_0200000001%1_cable"_s)
                  .arg(number, 2, 10, QLatin1Char('0')))
        , m_address("10.0.0.%1"_s.arg(number + 1))
        , m_connects(number % 2 == 0)
    {
        const QVariantMap configuration{{"Method"_s, "manual"_s}, {"Address"_s, m_address}};
        device.simulator.addService(
            m_identifier,
            {{"Favorite"_s, true}, {"IPv4"_s, configuration}, {"IPv4.Configuration"_s, configuration}});
        const FaultKind outcome =
            m_connects ? FaultKind::reply({}) : FaultKind::error("net.connman.Error.Failed"_s, "no"_s);
        device.simulator
            .injectFault("net.connman.Service"_s, "Connect"_s, outcome.after(connectMs),
                         "/net/connman/service/"_s + m_identifier, 0)
            .excuse();
    }

    void ask()
    {
        m_client.clearRecord();
        m_client.send("getAddress", m_identifier);
        m_client.send("connect", m_identifier);
        m_client.send("getHwAddress", "lo"_s);
        m_client.send("getAddress", m_identifier);
    }
    static constexpr int questions = 4;

    int answers() const { return replies().size(); }
    /// How many of its answers are those to its own questions.
    int rightAnswers() const
    {
        const QStringList all = replies();
        return qMin(all.count("getAddress -> \"%1\""_s.arg(m_address)), 2) +
               qMin(all.count("connect -> %1"_s.arg(m_connects ? "true"_s : "false"_s)), 1) +
               qMin(all.count("getHwAddress -> \"00:00:00:00:00:00\""_s), 1);
    }

private:
    QStringList replies() const { return m_client.record().filter(" -> "_s); }

    DaemonClient m_client;
    QString m_identifier;
    QString m_address;
    bool m_connects;
};

using Customers = std::vector<std::unique_ptr<Customer>>;

int sum(const Customers &customers, int (Customer::*count)() const)
{
    int total = 0;
    for (const auto &customer : customers) {
        total += (customer.get()->*count)();
    }
    return total;
}

} // namespace

void manyClients(Run &run, const Figure & /*figure*/)
{
    TestDevice device;
    Customers customers;
    for (int number = 0; number < clientCount; ++number) {
        customers.push_back(std::make_unique<Customer>(device, number));
    }
    device.startWithoutRadio();

    constexpr int askedEach = clientCount * Customer::questions;
    int asked = 0;
    int rounds = 0;
    int answered = 0;
    int right = 0;
    for (; rounds < run.count() && device.daemon.isRunning() && !run.isOutOfTime(); ++rounds) {
        for (const auto &customer : customers) {
            customer->ask();
        }
        asked += askedEach;
        waitUntil(
            [&] { return sum(customers, &Customer::answers) >= askedEach || !device.daemon.isRunning(); });
        answered += sum(customers, &Customer::answers);
        right += sum(customers, &Customer::rightAnswers);
        device.simulator.clearCalls();
    }
    run.checkEqual("rounds"_s, rounds, run.count());
    run.checkEqual("answers"_s, answered, asked);
    run.checkEqual("right answers"_s, right, asked);
    examineEnd(run, device.daemon);
}

} // namespace soak
