#include "Timings.h"

#include <QHash>

namespace simulator {

Timings Timings::fast()
{
    Timings timings;
    timings.scan = 10;
    timings.announce = 5;
    timings.association = 5;
    timings.configuration = 5;
    timings.online = 5;
    timings.wrongPassphrase = 10;
    timings.linkLocal = 10;
    timings.power = 5;
    return timings;
}

bool Timings::set(const QString &name, int milliseconds)
{
    static const QHash<QString, int Timings::*> members{
        {QStringLiteral("scan"), &Timings::scan},
        {QStringLiteral("announce"), &Timings::announce},
        {QStringLiteral("association"), &Timings::association},
        {QStringLiteral("configuration"), &Timings::configuration},
        {QStringLiteral("online"), &Timings::online},
        {QStringLiteral("wrongPassphrase"), &Timings::wrongPassphrase},
        {QStringLiteral("linkLocal"), &Timings::linkLocal},
        {QStringLiteral("power"), &Timings::power},
        {QStringLiteral("agent"), &Timings::agent},
        {QStringLiteral("connect"), &Timings::connect},
        {QStringLiteral("autoConnect"), &Timings::autoConnect},
    };
    const auto member = members.constFind(name);
    if (member == members.cend()) {
        return false;
    }
    this->*(*member) = milliseconds;
    return true;
}

} // namespace simulator
