#pragma once

#include <QString>
#include <QStringList>

/// What only a real kernel and real access points can tell.
namespace OnTheAir {

/// The hardware addresses of the stations that an access point has let in.
QStringList stations(const QString &accessPoint);
/// The access point that wlan0 is joined to, as a hardware address.
QString joinedAccessPoint();

} // namespace OnTheAir
