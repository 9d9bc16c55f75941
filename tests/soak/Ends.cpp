// SIGTERM at each kind of moment the daemon can be in.

#include "EventWait.h"
#include "Examination.h"
#include "Figure.h"
#include "HangingScene.h"
#include "Run.h"
#include "Text.h"

#include <QElapsedTimer>

#include <algorithm>
#include <csignal>
#include <vector>

using namespace test_support;

namespace soak {

namespace {

const QString bistro = "wifi_020000000200_42697374726f_managed_none"_s;
const QString serviceInterface = "net.connman.Service"_s;

/// At once, that is, on a machine that does much else.
constexpr qint64 atOnceMs = 2000;

bool startWithTwoNetworks(TestDevice &device)
{
    for (const QString &ssid : {"Cafe"_s, "Bistro"_s}) {
        device.simulator.addNetwork({{"ssid"_s, ssid}, {"security"_s, "none"_s}});
    }
    return device.startWithoutRadio();
}

bool connectWithoutEnd(TestDevice &device, const QString &identifier)
{
    device.client.send("connect", identifier);
    return device.simulator.waitForCall(
        "/net/connman/service/%1 net.connman.Service.Connect()"_s.arg(identifier));
}

bool isIdle(TestDevice &device)
{
    return device.startWithoutRadio();
}

bool waitsForConnect(TestDevice &device)
{
    device.simulator.injectFault(serviceInterface, "Connect"_s, FaultKind::never(), {}, 0).excuse();
    return startWithTwoNetworks(device) && connectWithoutEnd(device, cafe);
}

bool waitsForTwoConnects(TestDevice &device)
{
    return waitsForConnect(device) && connectWithoutEnd(device, bistro);
}

bool waitsForPowerState(TestDevice &device)
{
    device.simulator.removeTechnologyProperty("wifi"_s, "Powered"_s);
    return device.start() && device.simulator.waitForCall(
                                 "/net/connman/technology/wifi net.connman.Technology.GetProperties()"_s);
}

bool cyclesPower(TestDevice &device)
{
    return device.start() && device.commands().waitForCall("connmanctl disable wifi"_s);
}

struct Moment
{
    const char *name;
    bool mayWork; // else it has to end at once
    BlockingMoment reach;
};

std::vector<Moment> allMoments()
{
    const auto disconnect = [](DaemonClient &client, const QString &home) {
        client.send("disconnect", home);
    };
    return {{"idle", false, isIdle},
            {"inside a Connect", false, waitsForConnect},
            {"inside nested Connects", false, waitsForTwoConnects},
            {"ConnMan is silent", true, connmanIsSilent(serviceInterface, "Disconnect"_s, disconnect)},
            {"iw hangs", true, regionCommandOfAClientHangs},
            {"ip hangs", true, commandHangsAtStart("ip link set dev wlan0 down"_s)},
            {"ip hangs while it sets the address", true, addressCommandHangs},
            {"connmanctl hangs", true, connmanctlHangs},
            {"waiting for the power state", true, waitsForPowerState},
            {"the configuration manager is silent", true,
             peerIsSilentAtStart("com.tactora.ConfigurationManager"_s, "process"_s)},
            {"power cycle", true, cyclesPower}};
}

/// The milliseconds until it had ended with status 0; negative when it did not.
qint64 timeToEnd(Daemon &daemon)
{
    QElapsedTimer timer;
    timer.start();
    daemon.sendSignal(SIGTERM);
    const bool ended = waitUntil([&daemon] { return !daemon.isRunning(); }, patienceMs);
    const qint64 elapsed = timer.elapsed();
    if (!ended) {
        daemon.sendSignal(SIGKILL);
    }
    return daemon.waitForExit() == 0 ? elapsed : -1;
}

} // namespace

void ends(Run &run, const Figure &figure)
{
    int unexpected = 0;
    const std::vector<Moment> moments = allMoments();
    for (const Moment &moment : moments) {
        qint64 longest = 0;
        int endedWell = 0;
        for (int time = 0; time < run.count(); ++time) {
            HangingDevice device;
            const bool reached = moment.reach(device);
            const qint64 elapsed = timeToEnd(device.daemon);
            longest = std::max(longest, elapsed < 0 ? patienceMs : elapsed);
            endedWell += reached && elapsed >= 0 ? 1 : 0;
            unexpected += unexpectedLines(device.daemon);
        }
        const QString name = QLatin1String(moment.name);
        run.checkEqual(name + ", ends with status 0"_s, endedWell, run.count());
        run.checkTime(name + ", longest end"_s, longest, moment.mayWork ? figure.limit : atOnceMs);
    }
    run.checkEqual("unexpected log lines"_s, unexpected, 0);
}

} // namespace soak
