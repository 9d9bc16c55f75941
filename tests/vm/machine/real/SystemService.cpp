#include "SystemService.h"

#include "Systemd.h"
#include "Text.h"

#include <QDateTime>
#include <QFile>
#include <QTextStream>

SystemService::SystemService(const QString &name)
    : m_unit(name + ".service"_s)
{
}

bool SystemService::start()
{
    return Systemd::control({"start"_s, m_unit});
}

bool SystemService::stop()
{
    return Systemd::control({"stop"_s, m_unit}) && Systemd::property(m_unit, "Result"_s) == "success"_s;
}

bool SystemService::isRunning() const
{
    return Systemd::property(m_unit, "ActiveState"_s) == "active"_s;
}

QString SystemService::log() const
{
    return Systemd::journal(m_unit, m_mark);
}

void SystemService::markLog()
{
    m_mark = QDateTime::currentMSecsSinceEpoch();
}

std::unique_ptr<Program> makeConnman()
{
    return std::make_unique<SystemService>("connman"_s);
}

std::unique_ptr<Program> makeDaemon(const QString &keyboardDevice)
{
    QFile file("/etc/default/network-manager"_s);
    if (!file.open(QIODevice::WriteOnly)) {
        qWarning("the daemon's options cannot be set");
    }
    // World::waitUntilStarted() reads the former's debug lines, journalHasThePriorities() a warning of the
    // latter.
    QTextStream(&file) << "NETWORK_MANAGER_OPTIONS=\"--device " << keyboardDevice << "\"\n"
                       << "QT_LOGGING_RULES=\"NetworkSettings.debug=true;NetworkManager.warning=true\"\n";
    return std::make_unique<SystemService>("network-manager"_s);
}
