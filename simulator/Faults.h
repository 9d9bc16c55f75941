#pragma once

#include "Call.h"
#include <optional>
#include <QHash>
#include <QString>
#include <QVariantMap>
#include <QVector>

namespace simulator {

/// What happens to a call instead of its usual answer.
struct Fault
{
    enum class Kind { Error, Reply, Delay, Never, Vanish };

    Kind kind = Kind::Never;
    ErrorReply error;       // Error
    QVariantList arguments; // Reply
    int milliseconds = 0;   // Delay; Error and Reply wait so long, too

    /// From the script interface's dictionary; nothing when its "kind" is unknown.
    static std::optional<Fault> fromMap(const QVariantMap &map);
};

/// Which calls a fault is meant for: an empty path means any.
struct FaultTarget
{
    QString interface;
    QString member;
    QString path;

    bool matches(const Call &call) const;
};

/// The injected faults. Of several that match a call the oldest fires.
class Faults
{
public:
    /// `count`: how often it fires; 0 means every time. Returns its number, from 1 on.
    uint inject(FaultTarget target, uint count, Fault fault);
    /// The fault that fires for this call, if any.
    std::optional<Fault> take(const Call &call);
    /// Known after clear() too.
    uint timesFired(uint id) const { return m_fired.value(id); }
    bool isKnown(uint id) const { return m_fired.contains(id); }
    void clear() { m_active.clear(); }

private:
    struct Active
    {
        uint id;
        FaultTarget target;
        uint count;
        Fault fault;
    };

    QVector<Active> m_active;
    QHash<uint, uint> m_fired;
};

} // namespace simulator
