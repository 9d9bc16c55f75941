#pragma once

#include "Call.h"
#include <QObject>
#include <QStringList>

namespace simulator {

/// "<path> <interface>.<member>(<arguments>)"
QString callLine(const Call &call);

/// "<member>(<arguments>)"
QString memberLine(const Call &call);

/// The lines of the calls that arrived, in order.
class CallLog : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    void record(const QString &line);
    QStringList lines() const { return m_lines; }
    void clear() { m_lines.clear(); }

signals:
    void recorded(const QString &line);

private:
    QStringList m_lines;
};

} // namespace simulator
