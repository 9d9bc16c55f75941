#pragma once

#include "Fault.h"

#include <vector>

namespace test_support {
struct TestDevice;
} // namespace test_support

namespace soak {

class Run;

/// The simulated ConnMan, which fails now in this way, now in that.
class FailingConnman
{
public:
    FailingConnman(Run &run, test_support::TestDevice &device);
    ~FailingConnman();
    FailingConnman(const FailingConnman &) = delete;
    FailingConnman &operator=(const FailingConnman &) = delete;

    /// What went wrong is over; something else goes wrong now, or nothing.
    void failOtherwise();
    /// It is there and works.
    void recover();

    int injected() const { return static_cast<int>(m_failures.size()); }
    /// How many of the injected failures a call has met with.
    int happened() const;

private:
    void beLate();
    void refuse();
    void answerNonsense();
    void beSilent();
    void vanishInACall();
    void leave();
    void restart();
    void loseAService();
    /// That happens to some call or other of the daemon's.
    void fail(const test_support::FaultKind &kind);

    Run &m_run;
    test_support::TestDevice &m_device;
    std::vector<test_support::Fault> m_failures;
};

} // namespace soak
