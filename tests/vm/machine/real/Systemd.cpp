#include "Systemd.h"

#include "Command.h"

namespace {

QString read(const QStringList &arguments)
{
    return outputOf(QStringLiteral("journalctl"),
                    QStringList{QStringLiteral("--quiet"), QStringLiteral("--output=cat")} + arguments);
}

} // namespace

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

QString Systemd::journalEnd(const QString &unit)
{
    return read({QStringLiteral("--unit=") + unit, QStringLiteral("--lines=0"),
                 QStringLiteral("--show-cursor")})
        .section(QStringLiteral("-- cursor: "), 1)
        .trimmed();
}

QString Systemd::journal(const QString &unit, const QString &after, const QString &priorities)
{
    QStringList arguments{QStringLiteral("--unit=") + unit, QStringLiteral("--priority=") + priorities};
    if (!after.isEmpty()) {
        arguments.append(QStringLiteral("--after-cursor=") + after);
    }
    return read(arguments);
}
