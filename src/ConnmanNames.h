#pragma once

#include <QLatin1String>

/// ConnMan's own words, as it spells them: its bus name, objects, methods, signals, properties, values and
/// errors.
///
/// All are zero-terminated: log lines that show a name without quotes print its data().
namespace ConnmanNames {

inline constexpr QLatin1String Service("net.connman");

inline constexpr QLatin1String ManagerObject("/");
inline constexpr QLatin1String ManagerInterface("net.connman.Manager");
inline constexpr QLatin1String ServiceInterface("net.connman.Service");
inline constexpr QLatin1String TechnologyInterface("net.connman.Technology");

// Of services and technologies
inline constexpr QLatin1String GetProperties("GetProperties");
inline constexpr QLatin1String SetProperty("SetProperty");
inline constexpr QLatin1String PropertyChanged("PropertyChanged");

/// What "PropertyChanged" carries. Subscribe with a signal's signature: without one Qt hands a dictionary or
/// an array to the slot whatever the slot expects there, and ends the program when it cannot be read as that.
inline constexpr QLatin1String PropertyChangedSignature("sv");

/// How the manager tells which services have changed or come, and which have gone.
inline constexpr QLatin1String ServicesChanged("ServicesChanged");
inline constexpr QLatin1String ServicesChangedSignature("a(oa{sv})ao");

/// The name of the Wi-Fi technology, and the "Type" of its services.
inline constexpr QLatin1String Wifi("wifi");
inline constexpr QLatin1String Bluetooth("bluetooth");

// Properties of a service that more than one place reads or writes
inline constexpr QLatin1String Ethernet("Ethernet");
inline constexpr QLatin1String Ipv4("IPv4");
inline constexpr QLatin1String Ipv4Configuration("IPv4.Configuration");
inline constexpr QLatin1String Ipv6("IPv6");
inline constexpr QLatin1String Ipv6Configuration("IPv6.Configuration");

// Entries of the IP dictionaries
inline constexpr QLatin1String Method("Method");
inline constexpr QLatin1String Address("Address");
inline constexpr QLatin1String Netmask("Netmask");
inline constexpr QLatin1String Gateway("Gateway");
inline constexpr QLatin1String PrefixLength("PrefixLength");

// Values of "Method"; "dhcp" is IPv4's alone
inline constexpr QLatin1String Off("off");
inline constexpr QLatin1String Dhcp("dhcp");
inline constexpr QLatin1String Manual("manual");
inline constexpr QLatin1String Auto("auto");

// Words of "Security"; a network's identifier ends in one of them
inline constexpr QLatin1String OpenSecurity("none");
inline constexpr QLatin1String EnterpriseSecurity("ieee8021x");
inline constexpr QLatin1String WpsSecurity("wps");

/// How ConnMan refuses to disconnect what is not connected.
inline constexpr QLatin1String NotConnectedError("net.connman.Error.NotConnected");
/// What ConnMan reports to the agent when an attempt has failed without a better reason.
inline constexpr QLatin1String ConnectFailed("connect-failed");

} // namespace ConnmanNames
