#include "InterfaceStates.h"

#include <algorithm>
#include <iterator>
#include <utility>

void InterfaceStates::update(const Registry &registry)
{
    const QSet<QString> touched = std::exchange(m_touched, {});
    for (const QString &path : touched) {
        leave(path);
        const std::shared_ptr<ConnmanService> service = registry.value(path);
        const QString interface = service ? service->interface() : QString();
        if (!interface.isEmpty()) {
            m_places.insert(path, {interface, service->state()});
            ++m_counts[interface].at(static_cast<std::size_t>(service->state()));
        }
    }
}

void InterfaceStates::leave(const QString &path)
{
    const auto place = m_places.constFind(path);
    if (place == m_places.cend()) {
        return;
    }
    Counts &counts = m_counts[place->interface];
    --counts.at(static_cast<std::size_t>(place->state));
    if (std::all_of(counts.cbegin(), counts.cend(), [](int count) { return count == 0; })) {
        m_counts.remove(place->interface);
    }
    m_places.erase(place);
}

QHash<QString, InterfaceStates::State> InterfaceStates::highest() const
{
    QHash<QString, State> states;
    for (auto it = m_counts.cbegin(); it != m_counts.cend(); ++it) {
        const auto top = std::find_if(it->crbegin(), it->crend(), [](int count) { return count > 0; });
        states.insert(it.key(), static_cast<State>(std::distance(top, it->crend()) - 1));
    }
    return states;
}
