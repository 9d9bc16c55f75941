#include "CallLog.h"

#include "GVariantText.h"

namespace simulator {

QString callLine(const Call &call)
{
    return call.path() + QLatin1Char(' ') + call.interface() + QLatin1Char('.') + memberLine(call);
}

QString memberLine(const Call &call)
{
    return call.member() + QLatin1Char('(') + toGVariantText(call.arguments()) + QLatin1Char(')');
}

void CallLog::record(const QString &line)
{
    m_lines.append(line);
    emit recorded(line);
}

} // namespace simulator
