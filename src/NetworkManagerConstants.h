#pragma once

#include <QLatin1String>
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(logNetworkManager)

/// The words that the source files of NetworkManager share.
namespace NetworkManagerConstants {

const QLatin1String WifiType("wifi");
const QLatin1String WifiTechnology("wifi");
const QLatin1String BluetoothTechnology("bluetooth");

const QLatin1String EthernetInterface("eth0");
const QLatin1String WifiInterface("wlan0");
const QLatin1String EthernetLed("led10");
const QLatin1String WifiLed("led8");

const QLatin1String Off("off");
const QLatin1String Dhcp("dhcp");
const QLatin1String Manual("manual");
const QLatin1String Auto("auto");

// The security words that network identifiers end in, and the one of a service's "Security".
const QLatin1String OpenSecurity("none");
const QLatin1String EnterpriseSecurity("ieee8021x");
const QLatin1String WpsSecurity("wps");

} // namespace NetworkManagerConstants
