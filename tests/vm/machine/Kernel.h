#pragma once

#include <QString>
#include <QStringList>

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
