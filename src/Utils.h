#pragma once

#include <QVariantMap>

#include <optional>

class QDBusArgument;

/// Turns what Qt D-Bus delivers into plain Qt values.
class Utils
{
public:
    /// The plain form of one value received over D-Bus: a raw a{sv} argument becomes a QVariantMap (its own
    /// values stay as they are), everything else is returned unchanged. A user type that is no raw
    /// argument is logged as a warning.
    static QVariant convertDBusArgument(const QVariant &value);

    /// Reads `value` as a dictionary where it is a raw D-Bus argument of the signature a{sv}. Nothing else
    /// is touched: Qt crashes when an array, a structure or an a{ss} is read as such a dictionary.
    static std::optional<QVariantMap> rawDictionary(const QVariant &value);

    /// Reads the a{sv} at which `argument` stands. Of a key that is there twice the later value counts, where
    /// Qt's own operator would keep both.
    static QVariantMap readDictionary(const QDBusArgument &argument);
};
