#pragma once

#include <QString>
#include <QStringList>

/// The machine's systemd and its journal.
namespace Systemd {

/// Runs systemctl to its end; true when its exit status was 0.
bool control(const QStringList &arguments);
/// A property of a unit, such as "MainPID"; empty when it cannot be told.
QString property(const QString &unit, const QString &name);

/// The place in the journal that everything that has reached it is before. What a unit writes may take a
/// moment.
QString journalEnd();
/// The messages of a unit after that place. `priorities` is one, or a range such as "debug..info".
QString journal(const QString &unit, const QString &after,
                const QString &priorities = QStringLiteral("debug"));

} // namespace Systemd
