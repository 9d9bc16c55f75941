#pragma once

#include <QString>

/// What the kernel says of a process's memory, in KiB and exact to the page: "Rss" for all that is resident,
/// "Anonymous" for what it shares with no file. 0 for a process that has gone.
double memoryKiB(qint64 processId, const QString &figure);
