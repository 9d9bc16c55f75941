#pragma once

#include "Text.h"

#include <QString>
#include <QStringList>

inline const QString daemonUnit = "network-manager.service"_s;

/// The machine's systemd and its journal.
namespace Systemd {

/// Runs systemctl to its end; true when its exit status was 0.
bool control(const QStringList &arguments);
/// A property of a unit, such as "MainPID"; empty when it cannot be told.
QString property(const QString &unit, const QString &name);

/// What a unit has said since then, in milliseconds of Unix time; its latest words may take a moment to get
/// there. `priorities` is one, or a range such as "debug..info".
QString journal(const QString &unit, qint64 since, const QString &priorities = "debug"_s);

} // namespace Systemd
