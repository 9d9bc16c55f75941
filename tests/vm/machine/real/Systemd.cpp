#include "Systemd.h"

#include "Command.h"

bool Systemd::control(const QStringList &arguments)
{
    return run(QStringLiteral("systemctl"), arguments);
}

QString Systemd::property(const QString &unit, const QString &name)
{
    return outputOf(QStringLiteral("systemctl"), {QStringLiteral("show"), QStringLiteral("--value"),
                                                  QStringLiteral("--property=") + name, unit})
        .trimmed();
}

QString Systemd::journal(const QString &unit, qint64 since, const QString &priorities)
{
    return outputOf(QStringLiteral("journalctl"),
                    {QStringLiteral("--quiet"), QStringLiteral("--output=cat"),
                     QStringLiteral("--unit=") + unit, QStringLiteral("--priority=") + priorities,
                     QStringLiteral("--since=@%1").arg(static_cast<double>(since) / 1000, 0, 'f', 3)});
}
