#pragma once

#include <QLatin1String>
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(logNetworkManager)

/// The words that the source files of NetworkManager share.
namespace NetworkManagerConstants {

constexpr QLatin1String WifiType("wifi");
constexpr QLatin1String WifiTechnology("wifi");
constexpr QLatin1String BluetoothTechnology("bluetooth");

constexpr QLatin1String EthernetInterface("eth0");
constexpr QLatin1String WifiInterface("wlan0");
constexpr QLatin1String EthernetLed("led10");
constexpr QLatin1String WifiLed("led8");

constexpr QLatin1String Off("off");
constexpr QLatin1String Dhcp("dhcp");
constexpr QLatin1String Manual("manual");
constexpr QLatin1String Auto("auto");

// The security words that network identifiers end in, and the one of a service's "Security".
constexpr QLatin1String OpenSecurity("none");
constexpr QLatin1String EnterpriseSecurity("ieee8021x");
constexpr QLatin1String WpsSecurity("wps");

} // namespace NetworkManagerConstants
