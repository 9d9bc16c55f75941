#include "HangingScene.h"

#include "EventWait.h"
#include "Keys.h"
#include "Text.h"

#include <QTest>

namespace test_support {

namespace {

const QString manager = "net.connman.Manager"_s;
const QString service = "net.connman.Service"_s;
const QString technology = "net.connman.Technology"_s;
const QString configurationManager = "com.tactora.ConfigurationManager"_s;
const QString homeNetwork = "wifi_020000000200_486f6d65_managed_psk"_s;

} // namespace

BlockingMoment commandHangsAtStart(const QString &command)
{
    return [command](HangingDevice &device) {
        device.commands().script(command, {"deaf"_s, "hang"_s});
        return device.start() && device.commands().waitForCall(command);
    };
}

bool addressCommandHangs(HangingDevice &device)
{
    device.simulator.setSerialNumber(0);
    device.commands().script("ip link set dev wlan0 address"_s, {"hang"_s});
    return device.start() &&
           device.commands().waitForCall("ip link set dev wlan0 address 02:a7:c4:03:0d:40"_s);
}

bool regionCommandOfAClientHangs(HangingDevice &device)
{
    device.commands().script("iw reg"_s, {"hang"_s});
    if (!device.startWithoutRadio()) {
        return false;
    }
    device.client.send("setWifiRegion", "DE"_s);
    return device.commands().waitForCall("iw reg set DE"_s);
}

bool connmanctlHangs(HangingDevice &device)
{
    device.commands().script("connmanctl"_s, {"hang"_s});
    if (!device.startWithoutRadio()) {
        return false;
    }
    keys::pressChord(device.daemon.sandbox().keyboard(), keys::wifiOff);
    return device.commands().waitForCall("connmanctl disable wifi"_s);
}

BlockingMoment peerIsSilentAtStart(const QString &interface, const QString &member)
{
    return [=](HangingDevice &device) {
        device.silence.emplace(device.simulator.injectFault(interface, member, FaultKind::never()));
        return device.start() && device.simulator.waitForCall("/ %1.%2("_s.arg(interface, member));
    };
}

BlockingMoment connmanIsSilent(const QString &interface, const QString &member,
                               const std::function<void(DaemonClient &client, const QString &home)> &call)
{
    return [=](HangingDevice &device) {
        device.simulator.addNetwork({{"ssid"_s, "Home"_s}});
        // A network that is not connected has neither, but is asked for both before it is disconnected.
        device.log().tolerate("ConnmanService.properties|critical|Missing property \"Address\""_s);
        device.log().tolerate("ConnmanService.properties|critical|Missing property \"Gateway\""_s);
        if (!device.startWithoutRadio()) {
            return false;
        }
        device.silence.emplace(device.simulator.injectFault(interface, member, FaultKind::never()));
        call(device.client, homeNetwork);
        return QTest::qWaitFor([&device] { return device.silence->fired() > 0; }, eventTimeoutMs);
    };
}

void addAllMoments()
{
    QTest::addColumn<BlockingMoment>("block");
    QTest::newRow("iw list") << commandHangsAtStart("iw list"_s);
    QTest::newRow("ip link") << commandHangsAtStart("ip link set dev wlan0 down"_s);
    QTest::newRow("address command") << BlockingMoment(addressCommandHangs);
    QTest::newRow("region command of the first start") << commandHangsAtStart("iw reg set US"_s);
    QTest::newRow("region command of a client") << BlockingMoment(regionCommandOfAClientHangs);
    QTest::newRow("connmanctl") << BlockingMoment(connmanctlHangs);
    QTest::newRow("configuration manager") << peerIsSilentAtStart(configurationManager, "process"_s);
    QTest::newRow("GetServices") << peerIsSilentAtStart(manager, "GetServices"_s);
    QTest::newRow("RegisterAgent") << peerIsSilentAtStart(manager, "RegisterAgent"_s);
    QTest::newRow("Scan") << connmanIsSilent(
        technology, "Scan"_s, [](DaemonClient &client, const QString &) { client.send("networks"); });
    QTest::newRow("Disconnect") << connmanIsSilent(
        service, "Disconnect"_s,
        [](DaemonClient &client, const QString &home) { client.send("disconnect", home); });
    QTest::newRow("SetProperty of a service")
        << connmanIsSilent(service, "SetProperty"_s, [](DaemonClient &client, const QString &home) {
               client.send("setNameservers", home, QStringList("192.0.2.1"_s));
           });
    QTest::newRow("SetProperty of the technology")
        << connmanIsSilent(technology, "SetProperty"_s,
                           [](DaemonClient &client, const QString &) { client.send("setWifiPower", false); });
}

} // namespace test_support
