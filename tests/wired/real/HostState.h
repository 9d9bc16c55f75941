#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

/// What a ConnMan that escaped would change on the machine: its name, its resolver, ConnMan's memory and the
/// addresses of its interfaces. Keys say what a value is.
using HostState = QMap<QString, QByteArray>;

HostState hostState();
