#pragma once

#include <QLatin1String>

/// The device's network interfaces, as the kernel and ConnMan name them.
namespace NetworkInterfaces {

inline constexpr QLatin1String Ethernet("eth0");
inline constexpr QLatin1String Wifi("wlan0");

} // namespace NetworkInterfaces
