#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace test_support {
class SimulatorClient;
}

/// Finds out which network somebody means.
class NetworkNames
{
public:
    explicit NetworkNames(test_support::SimulatorClient &simulator);

    /// The identifiers of the last list shown, which can then be told by their number, from 1.
    void setListed(const QStringList &identifiers) { m_listed = identifiers; }

    struct Result
    {
        QString identifier;
        /// Why there is no identifier; empty if there is.
        QString problem;
    };
    /// `text` is the number in the last list, the identifier or its beginning, or the network's name; with a
    /// "=" in front the rest is passed on as it stands, whether there is such a network or not.
    Result find(const QString &text) const;

private:
    QStringList startingWith(const QString &text) const;
    QStringList named(const QString &name) const;

    test_support::SimulatorClient &m_simulator;
    QStringList m_listed;
};
