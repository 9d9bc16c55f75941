#pragma once

#include <QDBusError>
#include <QVariantMap>

#include <optional>

class ConnmanRemote;
class QDBusVariant;
class QLoggingCategory;

/// The properties of one ConnMan service or technology, as they were last told: "GetProperties" replaces
/// them, "PropertyChanged" patches them. Dictionaries in them are QVariantMaps
/// (Utils::convertDBusArgument()).
///
/// What it has to say is logged in its owner's category, with the object's path where the text has one.
class ConnmanProperties
{
public:
    using LogCategory = const QLoggingCategory &(*)();

    /// `remote` must outlive it.
    ConnmanProperties(const ConnmanRemote &remote, LogCategory log);

    const QVariantMap &all() const { return m_values; }
    bool contains(const QString &key) const { return m_values.contains(key); }

    /// Asks ConnMan for all of them. On an error the old ones stay; whether it is worth a line
    /// (logFailedFetch()) is the caller's to say.
    QDBusError fetch();
    void logFailedFetch(const QDBusError &error) const;
    /// Takes over what "PropertyChanged" carries.
    void patch(const QString &name, const QDBusVariant &value);
    /// Asks ConnMan to change one; a refusal is one critical line, unless the object has gone. The value here
    /// stays.
    QDBusError set(const QString &name, const QVariant &value) const;

    /// The value under `key`, if it is there and can be converted to the type; else one critical line.
    std::optional<QVariant> find(const QString &key, int requiredType) const;
    /// The same for a value that may be missing without a word.
    std::optional<QVariant> findOptional(const QString &key, int requiredType) const;
    void logInvalidType(const QString &key) const;

private:
    const ConnmanRemote *m_remote;
    LogCategory m_log;
    QVariantMap m_values;
};
