#include "Memory.h"

#include <QFile>

// Not /proc/*/statm or status: the kernel adds up to 64 pages to those at once.
double memoryKiB(qint64 processId, const QString &figure)
{
    QFile file(QStringLiteral("/proc/%1/smaps_rollup").arg(processId));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QString text = QString::fromLatin1(file.readAll());
    return text.section(figure + QLatin1Char(':'), 1).simplified().section(QLatin1Char(' '), 0, 0).toDouble();
}
