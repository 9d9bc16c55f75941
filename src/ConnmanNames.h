#pragma once

#include <QString>

/// ConnMan's bus name and interfaces, and the method and signal names this daemon uses of them.
namespace ConnmanNames {

inline QString service()
{
    return QStringLiteral("net.connman");
}

inline QString managerObject()
{
    return QStringLiteral("/");
}

inline QString managerInterface()
{
    return QStringLiteral("net.connman.Manager");
}

inline QString serviceInterface()
{
    return QStringLiteral("net.connman.Service");
}

inline QString technologyInterface()
{
    return QStringLiteral("net.connman.Technology");
}

// Plain character arrays, because log lines print them without quotes.
constexpr const char *GetProperties = "GetProperties";
constexpr const char *SetProperty = "SetProperty";
constexpr const char *PropertyChanged = "PropertyChanged";

/// What "PropertyChanged" carries. Subscribe with a signal's signature: without one Qt hands a dictionary or
/// an array to the slot whatever the slot expects there, and ends the program when it cannot be read as that.
const QLatin1String PropertyChangedSignature("sv");

// Properties of a service that more than one place reads or writes.
const QLatin1String Ipv4("IPv4");
const QLatin1String Ipv4Configuration("IPv4.Configuration");
const QLatin1String Ipv6("IPv6");
const QLatin1String Ipv6Configuration("IPv6.Configuration");

// Entries of the IP dictionaries.
const QLatin1String Method("Method");
const QLatin1String Address("Address");
const QLatin1String Netmask("Netmask");
const QLatin1String Gateway("Gateway");
const QLatin1String PrefixLength("PrefixLength");

} // namespace ConnmanNames
