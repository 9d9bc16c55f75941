#pragma once

#include "Latin1.h"

/// ConnMan's own words, as it spells them: its bus name, objects, methods, signals, properties, values and
/// errors.
///
/// All are zero-terminated: log lines that show a name without quotes print its data().
namespace ConnmanNames {

inline constexpr QLatin1String Service = latin1("net.connman");

inline constexpr QLatin1String ManagerObject = latin1("/");
inline constexpr QLatin1String ManagerInterface = latin1("net.connman.Manager");
inline constexpr QLatin1String ServiceInterface = latin1("net.connman.Service");
inline constexpr QLatin1String TechnologyInterface = latin1("net.connman.Technology");

// Of services and technologies
inline constexpr QLatin1String GetProperties = latin1("GetProperties");
inline constexpr QLatin1String SetProperty = latin1("SetProperty");
inline constexpr QLatin1String PropertyChanged = latin1("PropertyChanged");

/// What "PropertyChanged" carries. Subscribe with a signal's signature: without one Qt hands a dictionary or
/// an array to the slot whatever the slot expects there, and ends the program when it cannot be read as that.
inline constexpr QLatin1String PropertyChangedSignature = latin1("sv");

/// How the manager tells which services have changed or come, and which have gone.
inline constexpr QLatin1String ServicesChanged = latin1("ServicesChanged");
inline constexpr QLatin1String ServicesChangedSignature = latin1("a(oa{sv})ao");

/// The name of the Wi-Fi technology, and the "Type" of its services.
inline constexpr QLatin1String Wifi = latin1("wifi");
inline constexpr QLatin1String Bluetooth = latin1("bluetooth");

// Properties of a service that more than one place reads or writes
inline constexpr QLatin1String Ethernet = latin1("Ethernet");
inline constexpr QLatin1String Ipv4 = latin1("IPv4");
inline constexpr QLatin1String Ipv4Configuration = latin1("IPv4.Configuration");
inline constexpr QLatin1String Ipv6 = latin1("IPv6");
inline constexpr QLatin1String Ipv6Configuration = latin1("IPv6.Configuration");

// Entries of the IP dictionaries
inline constexpr QLatin1String Method = latin1("Method");
inline constexpr QLatin1String Address = latin1("Address");
inline constexpr QLatin1String Netmask = latin1("Netmask");
inline constexpr QLatin1String Gateway = latin1("Gateway");
inline constexpr QLatin1String PrefixLength = latin1("PrefixLength");

// Values of "Method"; "dhcp" is IPv4's alone
inline constexpr QLatin1String Off = latin1("off");
inline constexpr QLatin1String Dhcp = latin1("dhcp");
inline constexpr QLatin1String Manual = latin1("manual");
inline constexpr QLatin1String Auto = latin1("auto");

// Words of "Security"; a network's identifier ends in one of them
inline constexpr QLatin1String OpenSecurity = latin1("none");
inline constexpr QLatin1String EnterpriseSecurity = latin1("ieee8021x");
inline constexpr QLatin1String WpsSecurity = latin1("wps");

/// How ConnMan refuses to disconnect what is not connected.
inline constexpr QLatin1String NotConnectedError = latin1("net.connman.Error.NotConnected");
/// What ConnMan reports to the agent when an attempt has failed without a better reason.
inline constexpr QLatin1String ConnectFailed = latin1("connect-failed");

} // namespace ConnmanNames
