#pragma once

#include "ConnmanService.h"

#include <QLatin1String>

// The names that the tests of the mirror have in common.

using State = ConnmanService::State;
Q_DECLARE_METATYPE(ConnmanService::State)

/// "Home", "a", "b" and the cable, as ConnMan names services.
inline const QLatin1String Identifier("wifi_020000000000_686f6d65_managed_psk");
inline const QLatin1String A("wifi_020000000000_61_managed_psk");
inline const QLatin1String B("wifi_020000000000_62_managed_none");
inline const QLatin1String Wired("ethernet_020000000001_cable");
/// A network interface.
inline const QLatin1String Wlan("wlan0");

inline const QLatin1String ManagerPath("/");
inline const QLatin1String ManagerInterface("net.connman.Manager");
inline const QLatin1String StateKey("State");
inline const QLatin1String EthernetKey("Ethernet");
inline const QLatin1String Ipv4("IPv4");

/// Logging categories.
inline const QLatin1String ServicesLog("ConnmanManager.services");
inline const QLatin1String PropertiesLog("ConnmanService.properties");
