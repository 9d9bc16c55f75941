// SIGTERM at each kind of moment the daemon can be in.

#include "EventWait.h"
#include "Examination.h"
#include "Figure.h"
#include "Run.h"
#include "TestDevice.h"
#include "Text.h"

#include <QElapsedTimer>

#include <algorithm>
#include <csignal>
#include <vector>

using namespace test_support;

namespace soak {

namespace {

const QString cafe = "wifi_020000000200_43616665_managed_none"_s;
const QString bistro = "wifi_020000000200_42697374726f_managed_none"_s;
const QString serviceInterface = "net.connman.Service"_s;

/// At once, that is, on a machine that does much else.
constexpr qint64 atOnceMs = 2000;
/// When a daemon that does not end is given up.
constexpr int patienceMs = 10000;

QString callOf(const QString &identifier, const QString &member)
{
    return "/net/connman/service/%1 net.connman.Service.%2"_s.arg(identifier, member);
}

/// ConnMan hears that call of a service and says nothing.
void silence(TestDevice &device, const QString &member)
{
    device.simulator.injectFault(serviceInterface, member, FaultKind::never(), {}, 0).excuse();
}

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
    return device.simulator.waitForCall(callOf(identifier, "Connect()"_s));
}

bool isIdle(TestDevice &device)
{
    return device.startWithoutRadio();
}

bool waitsForConnect(TestDevice &device)
{
    silence(device, "Connect"_s);
    return startWithTwoNetworks(device) && connectWithoutEnd(device, cafe);
}

bool waitsForTwoConnects(TestDevice &device)
{
    return waitsForConnect(device) && connectWithoutEnd(device, bistro);
}

bool waitsForConnman(TestDevice &device)
{
    silence(device, "Disconnect"_s);
    if (!startWithTwoNetworks(device)) {
        return false;
    }
    device.client.send("disconnect", cafe);
    return device.simulator.waitForCall(callOf(cafe, "Disconnect()"_s));
}

/// The daemon waits for a program that does not end before the test does.
bool waitsForCommand(TestDevice &device, const QString &command)
{
    device.commands().script(command, {"deaf"_s, "hold"_s});
    return device.start() && device.commands().waitForCall(command);
}

bool waitsForIw(TestDevice &device)
{
    device.commands().script("iw reg set SE"_s, {"deaf"_s, "hold"_s});
    if (!device.startWithoutRadio()) {
        return false;
    }
    device.client.send("setWifiRegion", "SE"_s);
    return device.commands().waitForCall("iw reg set SE"_s);
}

bool waitsForIp(TestDevice &device)
{
    return waitsForCommand(device, "ip link set dev wlan0 down"_s);
}

bool waitsForTheAddressCommand(TestDevice &device)
{
    device.commands().script("ip link set dev wlan0 address"_s, {"deaf"_s, "hold"_s});
    return device.start() && waitUntilFilesSatisfy({device.commands().logFile()}, [&device] {
               return !device.commands().calls().filter("wlan0 address"_s).isEmpty();
           });
}

bool waitsForConnmanctl(TestDevice &device)
{
    return waitsForCommand(device, "connmanctl disable wifi"_s);
}

bool waitsForPowerState(TestDevice &device)
{
    device.simulator.removeTechnologyProperty("wifi"_s, "Powered"_s);
    return device.start() && device.simulator.waitForCall(
                                 "/net/connman/technology/wifi net.connman.Technology.GetProperties()"_s);
}

bool waitsForConfigurationManager(TestDevice &device)
{
    device.simulator.injectFault("com.tactora.ConfigurationManager"_s, "process"_s, FaultKind::never(), {}, 0)
        .excuse();
    return device.start() && device.simulator.waitForCall("/ com.tactora.ConfigurationManager.process"_s);
}

bool cyclesPower(TestDevice &device)
{
    return device.start() && device.commands().waitForCall("connmanctl disable wifi"_s);
}

struct Moment
{
    const char *name;
    bool mayWork; // else it has to end at once
    bool (*reach)(TestDevice &device);
};

const std::vector<Moment> moments{
    {"idle", false, isIdle},
    {"inside a Connect", false, waitsForConnect},
    {"inside nested Connects", false, waitsForTwoConnects},
    {"ConnMan is silent", true, waitsForConnman},
    {"iw hangs", true, waitsForIw},
    {"ip hangs", true, waitsForIp},
    {"ip hangs while it sets the address", true, waitsForTheAddressCommand},
    {"connmanctl hangs", true, waitsForConnmanctl},
    {"waiting for the power state", true, waitsForPowerState},
    {"the configuration manager is silent", true, waitsForConfigurationManager},
    {"power cycle", true, cyclesPower},
};

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
    for (const Moment &moment : moments) {
        qint64 longest = 0;
        int endedWell = 0;
        for (int time = 0; time < run.count(); ++time) {
            TestDevice device;
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
