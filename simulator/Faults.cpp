#include "Faults.h"

#include <algorithm>
#include <QDBusArgument>
#include <utility>

namespace simulator {

namespace {
std::optional<Fault::Kind> kindFromName(const QString &name)
{
    static const QHash<QString, Fault::Kind> kinds{{QStringLiteral("error"), Fault::Kind::Error},
                                                   {QStringLiteral("reply"), Fault::Kind::Reply},
                                                   {QStringLiteral("delay"), Fault::Kind::Delay},
                                                   {QStringLiteral("never"), Fault::Kind::Never},
                                                   {QStringLiteral("vanish"), Fault::Kind::Vanish}};
    const auto found = kinds.constFind(name);
    return found == kinds.cend() ? std::nullopt : std::make_optional(*found);
}
} // namespace

std::optional<Fault> Fault::fromMap(const QVariantMap &map)
{
    const std::optional<Kind> kind = kindFromName(map.value(QStringLiteral("kind")).toString());
    if (!kind) {
        return std::nullopt;
    }
    Fault fault;
    fault.kind = *kind;
    fault.error = {map.value(QStringLiteral("name")).toString(),
                   map.value(QStringLiteral("message")).toString()};
    fault.arguments = qdbus_cast<QVariantList>(map.value(QStringLiteral("arguments")));
    fault.milliseconds = map.value(QStringLiteral("milliseconds")).toInt();
    return fault;
}

bool FaultTarget::matches(const Call &call) const
{
    return interface == call.interface() && member == call.member() &&
           (path.isEmpty() || path == call.path());
}

uint Faults::inject(FaultTarget target, uint count, Fault fault)
{
    const uint id = static_cast<uint>(m_fired.size()) + 1;
    m_fired.insert(id, 0);
    m_active.append({id, std::move(target), count, std::move(fault)});
    return id;
}

std::optional<Fault> Faults::take(const Call &call)
{
    const auto active = std::find_if(m_active.begin(), m_active.end(),
                                     [&call](const Active &each) { return each.target.matches(call); });
    if (active == m_active.end()) {
        return std::nullopt;
    }
    ++m_fired[active->id];
    const Fault fault = active->fault;
    if (active->count == 1) {
        m_active.erase(active);
    } else if (active->count > 1) {
        --active->count;
    }
    return fault;
}

} // namespace simulator
