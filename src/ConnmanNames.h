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
constexpr char GetProperties[] = "GetProperties";
constexpr char SetProperty[] = "SetProperty";
constexpr char PropertyChanged[] = "PropertyChanged";

// Properties of a service that more than one place reads or writes.
constexpr QLatin1String Ipv4("IPv4");
constexpr QLatin1String Ipv4Configuration("IPv4.Configuration");
constexpr QLatin1String Ipv6("IPv6");
constexpr QLatin1String Ipv6Configuration("IPv6.Configuration");

// Entries of the IP dictionaries.
constexpr QLatin1String Method("Method");
constexpr QLatin1String Address("Address");
constexpr QLatin1String Netmask("Netmask");
constexpr QLatin1String Gateway("Gateway");
constexpr QLatin1String PrefixLength("PrefixLength");

} // namespace ConnmanNames
