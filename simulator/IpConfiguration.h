#pragma once

#include "Call.h"
#include <optional>
#include <QStringList>
#include <QVariantMap>

namespace simulator {

/// A configuration as a client sends it, checked as ConnMan checks it.
struct IpConfiguration
{
    /// As ConnMan then shows it; without meaning when there is a refusal.
    QVariantMap shown;
    std::optional<ErrorReply> refusal;

    /// The value of SetProperty "IPv4.Configuration" and "IPv6.Configuration".
    static IpConfiguration ipv4(const QVariant &value);
    static IpConfiguration ipv6(const QVariant &value);
};

/// The strings of an array; nothing when `value` is no array. Elements of other types are left out.
std::optional<QStringList> stringsOf(const QVariant &value);

/// Those of `addresses` that are IP addresses.
QStringList onlyAddresses(const QStringList &addresses);

} // namespace simulator
