#pragma once

#include "Latin1.h"

/// The device's network interfaces, as the kernel and ConnMan name them.
namespace NetworkInterfaces {

inline constexpr QLatin1String Ethernet = latin1("eth0");
inline constexpr QLatin1String Wifi = latin1("wlan0");

} // namespace NetworkInterfaces
