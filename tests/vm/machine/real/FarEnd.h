#pragma once

#include <QString>
#include <QStringList>

/// What the far ends of air and cable share. Each is in a network namespace of its own.
namespace FarEnd {

bool runIn(const QString &space, const QString &program, const QStringList &arguments);
/// Ends the server that wrote the file, and waits until it has gone; false when there is no such file.
bool killServer(const QString &pidFile);

} // namespace FarEnd
