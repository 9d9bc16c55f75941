#pragma once

#include "ConnmanService.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <array>
#include <memory>

/// What the services make of the network interfaces: each has the highest state of the services on it. A
/// service counts with its interface and state as they were when it was last looked at, which is done only
/// after it was touched: among thousands of services a change costs no more than among a few.
class InterfaceStates
{
public:
    using State = ConnmanService::State;
    using Registry = QHash<QString, std::shared_ptr<ConnmanService>>;

    /// The service at `path` has come or gone, or its state or its interface has changed.
    void touch(const QString &path) { m_touched.insert(path); }
    /// Looks at every touched service that is in the registry, and forgets those that are not.
    void update(const Registry &registry);
    /// The state of every interface that has a service.
    QHash<QString, State> highest() const;

private:
    struct Place
    {
        QString interface;
        State state;
    };
    /// How many services are in each state.
    using Counts = std::array<int, ConnmanService::StateCount>;

    void leave(const QString &path);

    QSet<QString> m_touched;
    QHash<QString, Place> m_places;
    QHash<QString, Counts> m_counts;
};
