#include "Bench.h"
#include "Kernel.h"
#include "Program.h"
#include "Text.h"

namespace {

class SimulatedConnman : public Program
{
public:
    bool start() override
    {
        test_support::SimulatorClient &simulator = Bench::instance().simulator;
        simulator.setHardwareAddress(Kernel::hardwareAddress("wlan0"_s));
        simulator.startConnman();
        m_isRunning = true;
        return true;
    }

    bool stop() override
    {
        if (m_isRunning) {
            Bench::instance().simulator.stopConnman();
            m_isRunning = false;
        }
        return true;
    }

    bool isRunning() const override { return m_isRunning; }
    /// What reached it, which tells more than the little that the real one logs.
    QString log() const override
    {
        return Bench::instance().simulator.calls().join(QLatin1Char('\n')) + QLatin1Char('\n');
    }
    void markLog() override { Bench::instance().simulator.clearCalls(); }

private:
    bool m_isRunning = false;
};

class SandboxedDaemon : public Program
{
public:
    explicit SandboxedDaemon(QString keyboardDevice)
        : m_keyboardDevice(std::move(keyboardDevice))
    {
        // World::waitUntilStarted() reads this category's debug lines.
        daemon().setLoggingRules("NetworkSettings.debug=true"_s);
    }

    bool start() override
    {
        renewLeds();
        return daemon().start({"--device"_s, m_keyboardDevice});
    }

    bool stop() override
    {
        const bool stopped = !daemon().isRunning() || daemon().stop();
        tolerateComplaints();
        return stopped;
    }

    bool isRunning() const override { return daemon().isRunning(); }

    QString log() const override
    {
        return daemon().log().lines().mid(m_mark).join(QLatin1Char('\n')) + QLatin1Char('\n');
    }

    void markLog() override { m_mark = daemon().log().lines().size(); }

private:
    static test_support::Daemon &daemon() { return Bench::instance().daemon; }

    /// A fake LED has forgotten the triggers it offers once the daemon has chosen one; the kernel's never
    /// does.
    static void renewLeds()
    {
        test_support::FakeDevices &devices = Bench::instance().devices();
        for (const QString &name : {"led8"_s, "led10"_s}) {
            devices.removeLed(name);
            devices.addLed(name);
        }
    }

    /// Scenarios look at what users see, and many of them make the daemon complain. A sanitizer's report or a
    /// misuse of Qt is no such complaint and fails the run.
    static void tolerateComplaints()
    {
        const QStringList problems = daemon().log().problems();
        for (const QString &problem : problems) {
            if (problem.section(QLatin1Char('|'), 1, 1) == QLatin1String("critical")) {
                daemon().log().tolerate(problem);
            }
        }
    }

    QString m_keyboardDevice;
    int m_mark = 0;
};

} // namespace

std::unique_ptr<Program> makeConnman()
{
    return std::make_unique<SimulatedConnman>();
}

std::unique_ptr<Program> makeDaemon(const QString &keyboardDevice)
{
    return std::make_unique<SandboxedDaemon>(keyboardDevice);
}
