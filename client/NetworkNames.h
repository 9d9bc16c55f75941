#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

/// How a network is told, for help texts.
QString networkHelp();

/// Finds out which network somebody means.
class NetworkNames
{
public:
    /// The networks that there are: identifier to properties.
    void setNetworks(const QVariantMap &networks) { m_networks = networks; }
    /// The identifiers of the last list shown, which can then be told by their number, from 1.
    void setListed(const QStringList &identifiers) { m_listed = identifiers; }

    struct Result
    {
        QString identifier;
        /// Why there is no identifier; empty if there is.
        QString problem;
    };
    /// `text` is the number in the last list, the network's name, its identifier or a part of it; with a "="
    /// in front the rest is passed on as it stands, whether there is such a network or not.
    Result find(const QString &text) const;

    /// Whether that text tells an identifier without any list of the networks there are.
    bool tells(const QString &text) const;

    /// What a network can be called: its name where that is its own, else its identifier.
    QStringList names() const;
    /// The network's name, or the identifier where it has none or is not known.
    QString nameOf(const QString &identifier) const;

private:
    QStringList named(const QString &name) const;
    QStringList identified(const QString &text) const;
    /// The identifier that `text` tells by itself; null when it does not.
    QString told(const QString &text) const;
    QString described(const QString &identifier) const;

    QVariantMap m_networks;
    QStringList m_listed;
};
