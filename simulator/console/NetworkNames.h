#pragma once

#include <QDBusConnection>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// Finds out which network somebody means.
class NetworkNames
{
public:
    /// `bus` is the one that ConnMan is on.
    explicit NetworkNames(QDBusConnection bus);

    /// The identifiers of the last list shown, which can then be told by their number, from 1.
    void setListed(const QStringList &identifiers) { m_listed = identifiers; }

    struct Result
    {
        QString identifier;
        /// Why there is no identifier; empty if there is.
        QString problem;
    };
    /// `text` is the number in the last list, the identifier or a part of it, or the network's name; with a
    /// "=" in front the rest is passed on as it stands, whether there is such a network or not.
    Result find(const QString &text) const;

private:
    /// The properties of ConnMan's services by identifier.
    QMap<QString, QVariantMap> services() const;

    QDBusConnection m_bus;
    QStringList m_listed;
};
