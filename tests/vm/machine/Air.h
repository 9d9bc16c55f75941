#pragma once

#include <QString>

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
    /// Lets in one station that knows the PIN.
    bool expectPin(const QString &accessPoint, const QString &pin);
    /// Lets in the one station that asks for it now.
    bool pressButton(const QString &accessPoint);
    /// True when the address answers to somebody at the access points' side.
    bool reaches(const QString &address);

private:
    bool m_serving = true;
    bool m_touched = false;
};
