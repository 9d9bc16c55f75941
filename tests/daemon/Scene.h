#pragma once

#include "TestDevice.h"
#include "Text.h"
#include <QDebug>
#include <QElapsedTimer>

/// What the tests of the daemon have in common: the device's two links and how speech looks.
namespace scene {

const QString cable = "ethernet_020000000100_cable"_s;
const QString home = "wifi_020000000200_486f6d65_managed_psk"_s;
const QString ethernetLed = "led10"_s;
/// Makes "Home" the preferred network.
const QByteArray homePreferred = "[wifi]\nprefered=Home\n";
const QByteArray regionSweden = "[wifi]\nregion=SE\n";

/// The upper limit is generous: machines that run tests are busy.
inline bool isBetween(const QElapsedTimer &clock, qint64 leastMs, qint64 mostMs)
{
    const qint64 elapsed = clock.elapsed();
    if (leastMs < elapsed && elapsed < mostMs) {
        return true;
    }
    qWarning() << elapsed << "ms is not between" << leastMs << "and" << mostMs;
    return false;
}

const QString connman = "net.connman"_s;
/// "Home" is told to be connected.
const QString announcement = "networkConnected(\"Home\")"_s;
const QString busLost = "default|critical|Connection to system-bus lost."_s;

/// Commands as the device's list of them has them.
const QString enable = "connmanctl enable wifi"_s;
const QString disable = "connmanctl disable wifi"_s;
/// The address that belongs to the simulated device's serial number.
const QString setAddress = "ip link set dev wlan0 address 02:a7:c4:03:0d:a4"_s;
const QString setSweden = "iw reg set SE"_s;

/// Calls as the simulator lists them.
const QString scan = "/net/connman/technology/wifi net.connman.Technology.Scan()"_s;

inline QString servicePath(const QString &identifier)
{
    return "/net/connman/service/"_s + identifier;
}

inline QString connectCall(const QString &identifier)
{
    return servicePath(identifier) + " net.connman.Service.Connect()"_s;
}

/// ConnMan takes "AutoConnect" of networks it remembers only; each other one is a line.
const QString autoConnectRefused =
    "ConnmanService.properties|critical|Setting property \"AutoConnect\" failed: \"Invalid service\""_s;

/// What happens to the next Connect of any service instead of connecting.
inline test_support::Fault connectFault(test_support::SimulatorClient &simulator,
                                        const test_support::FaultKind &kind)
{
    return simulator.injectFault("net.connman.Service"_s, "Connect"_s, kind);
}

/// A Connect that fails, and the line it leaves.
inline test_support::FaultKind connectRefusal()
{
    return test_support::FaultKind::error("net.connman.Error.Failed"_s, "Input/output error"_s);
}
inline QString connectRefused(const QString &path)
{
    return "ConnmanService|critical|Failed to asynchronously call Connect on \"%1\" : "
           "QDBusError(\"net.connman.Error.Failed\", \"Input/output error\")"_s.arg(path);
}

/// The sentence's request as the simulator lists it, the id left out.
inline QString sentence(int number, const QStringList &arguments = {})
{
    QString words;
    if (!arguments.isEmpty()) {
        words = "\"arguments\": <[\"%1\"]>, "_s.arg(arguments.join("\", \""_s));
    }
    return "{%1\"sentenceId\": <%2>, \"serviceId\": <4>}"_s.arg(words).arg(number);
}

/// The requests that reached the speech service so far, ids left out.
inline QStringList spoken(test_support::SimulatorClient &simulator)
{
    QStringList requests;
    const QStringList lines = simulator.speech();
    for (const QString &line : lines) {
        requests << line.mid(line.indexOf(QLatin1Char('{'))).chopped(1);
    }
    return requests;
}

} // namespace scene
