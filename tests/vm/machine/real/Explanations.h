#pragma once

#include <QStringList>

/// The log lines among these that network-manager(8) does not tell of under DIAGNOSTICS.
QStringList unexplained(const QStringList &lines);
