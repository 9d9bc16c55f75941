#pragma once

#include <QString>
#include <QStringList>

/// The access points around the device (the table in guest/air names them).
class Air
{
public:
    /// Everything as at power-on: all access points on but "garden", DHCP served.
    bool restore();
    bool switchOn(const QString &accessPoint);
    bool switchOff(const QString &accessPoint);
    /// Stops or starts the DHCP servers and router advertisements of all access points.
    bool serveAddresses(bool on);
    /// Lets one station that knows the PIN in, as the button on the access point would.
    bool expectPin(const QString &accessPoint, const QString &pin);
    /// True when the address answers to somebody at the access points' side.
    bool reaches(const QString &address);

private:
    bool m_serving = true;
    bool m_touched = false;
};

/// The far end of the device's network cable.
class Lan
{
public:
    /// Dhcp serves 10.20.0.0/24, OtherDhcp 10.21.0.0/24, Ipv6Router advertises fd00:20::/64.
    enum class Server { Nobody, Dhcp, OtherDhcp, Ipv6Router };

    bool plugIn(Server server);
    bool unplug();

private:
    bool m_plugged = false;
};

/// The state of the device's own interfaces, whoever says what about it.
namespace Kernel {

/// The name of the network that wlan0 is joined to, empty when it is not.
QString joinedNetwork();
/// Addresses of an interface without prefix length; link-local ones are left out.
QStringList addresses(const QString &interface);
QString hardwareAddress(const QString &interface);
/// The country whose rules the radio keeps to.
QString region();
/// Sets it behind the daemon's back.
bool setRegion(const QString &country);

} // namespace Kernel
