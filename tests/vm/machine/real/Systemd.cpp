#include "Systemd.h"

#include "Command.h"
#include "Text.h"

bool Systemd::control(const QStringList &arguments)
{
    return run("systemctl"_s, arguments);
}

QString Systemd::property(const QString &unit, const QString &name)
{
    return outputOf("systemctl"_s, {"show"_s, "--value"_s, "--property="_s + name, unit}).trimmed();
}

QString Systemd::journal(const QString &unit, qint64 since, const QString &priorities)
{
    return outputOf("journalctl"_s,
                    {"--quiet"_s, "--output=cat"_s, "--unit="_s + unit, "--priority="_s + priorities,
                     "--since=@%1"_s.arg(static_cast<double>(since) / 1000, 0, 'f', 3)});
}
