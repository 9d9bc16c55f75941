#pragma once

#include <QString>
#include <QStringList>

/// The machine's systemd and its journal.
namespace Systemd {

/// Runs systemctl to its end; true when its exit status was 0.
bool control(const QStringList &arguments);
/// A property of a unit, such as "MainPID"; empty when it cannot be told.
QString property(const QString &unit, const QString &name);

/// The place in the journal after the unit's latest message; empty where it has none. What it has just
/// written may take a moment to get there.
QString journalEnd(const QString &unit);
/// The messages of a unit after that place. `priorities` is one, or a range such as "debug..info".
QString journal(const QString &unit, const QString &after,
                const QString &priorities = QStringLiteral("debug"));

} // namespace Systemd
