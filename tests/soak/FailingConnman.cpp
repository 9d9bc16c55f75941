#include "FailingConnman.h"

#include "Run.h"
#include "TestDevice.h"
#include "Text.h"

#include <algorithm>
#include <array>

using namespace test_support;

namespace soak {

namespace {

constexpr int longestDelayMs = 60;

struct ConnmanCall
{
    const char *interface;
    const char *member;
};

/// All calls that the daemon makes.
constexpr std::array<ConnmanCall, 13> connmanCalls{{
    {"net.connman.Service", "Connect"},
    {"net.connman.Service", "Connect"},
    {"net.connman.Service", "Disconnect"},
    {"net.connman.Service", "Remove"},
    {"net.connman.Service", "SetProperty"},
    {"net.connman.Service", "GetProperties"},
    {"net.connman.Technology", "Scan"},
    {"net.connman.Technology", "SetProperty"},
    {"net.connman.Technology", "GetProperties"},
    {"net.connman.Manager", "GetServices"},
    {"net.connman.Manager", "GetTechnologies"},
    {"net.connman.Manager", "RegisterAgent"},
    {"com.tactora.ConfigurationManager", "process"},
}};

} // namespace

FailingConnman::FailingConnman(Run &run, TestDevice &device)
    : m_run(run)
    , m_device(device)
{
}

// Whether one of them happens is left to chance; that some do is looked at.
FailingConnman::~FailingConnman()
{
    for (Fault &failure : m_failures) {
        failure.excuse();
    }
}

int FailingConnman::happened() const
{
    return static_cast<int>(std::count_if(m_failures.cbegin(), m_failures.cend(),
                                          [](const Fault &failure) { return failure.fired() > 0; }));
}

void FailingConnman::failOtherwise()
{
    recover();
    constexpr std::array<void (FailingConnman::*)(), 8> ways{
        &FailingConnman::beLate,        &FailingConnman::refuse,      &FailingConnman::answerNonsense,
        &FailingConnman::beSilent,      &FailingConnman::leave,       &FailingConnman::restart,
        &FailingConnman::vanishInACall, &FailingConnman::loseAService};
    (this->*ways.at(static_cast<std::size_t>(m_run.below(ways.size()))))();
}

// Who has waited for an answer in vain learns of it when ConnMan leaves the bus.
void FailingConnman::recover()
{
    m_device.simulator.clearFaults();
    m_device.simulator.setPresent(connmanName, false);
    m_device.simulator.setPresent(connmanName, true);
}

void FailingConnman::fail(const FaultKind &kind)
{
    const ConnmanCall &call = connmanCalls.at(static_cast<std::size_t>(m_run.below(connmanCalls.size())));
    m_failures.push_back(m_device.simulator.injectFault(QString::fromLatin1(call.interface),
                                                        QString::fromLatin1(call.member), kind, {},
                                                        static_cast<uint>(1 + m_run.below(4))));
}

void FailingConnman::beLate()
{
    fail(FaultKind::delay(m_run.below(longestDelayMs)));
    fail(FaultKind::error("net.connman.Error.Failed"_s, "late"_s).after(m_run.below(longestDelayMs)));
}

void FailingConnman::refuse()
{
    fail(FaultKind::error("net.connman.Error.InProgress"_s, "no"_s));
    fail(FaultKind::error("org.freedesktop.DBus.Error.UnknownObject"_s, "gone"_s));
}

void FailingConnman::answerNonsense()
{
    fail(FaultKind::reply({"nonsense"_s, 7}));
    fail(FaultKind::reply({QVariantMap{{"State"_s, 7}, {"IPv4"_s, "nonsense"_s}, {"Type"_s, true}}}));
}

void FailingConnman::beSilent()
{
    fail(FaultKind::never());
}

void FailingConnman::vanishInACall()
{
    fail(FaultKind::vanish());
}

void FailingConnman::leave()
{
    m_device.simulator.setPresent(connmanName, false);
}

void FailingConnman::restart()
{
    m_device.simulator.restartConnman();
}

void FailingConnman::loseAService()
{
    if (m_device.simulator.services().contains(flapper)) {
        m_device.simulator.removeService(flapper);
    } else {
        m_device.simulator.addService(flapper);
    }
}

} // namespace soak
