#include "SystemService.h"

#include "Systemd.h"

#include <QDateTime>
#include <QFile>
#include <QTextStream>

SystemService::SystemService(const QString &name)
    : m_unit(name + QStringLiteral(".service"))
{
}

bool SystemService::start()
{
    return Systemd::control({QStringLiteral("start"), m_unit});
}

bool SystemService::stop()
{
    return Systemd::control({QStringLiteral("stop"), m_unit}) &&
           Systemd::property(m_unit, QStringLiteral("Result")) == QStringLiteral("success");
}

bool SystemService::isRunning() const
{
    return Systemd::property(m_unit, QStringLiteral("ActiveState")) == QStringLiteral("active");
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
    return std::make_unique<SystemService>(QStringLiteral("connman"));
}

std::unique_ptr<Program> makeDaemon(const QString &keyboardDevice)
{
    QFile file(QStringLiteral("/etc/default/network-manager"));
    if (!file.open(QIODevice::WriteOnly)) {
        qWarning("the daemon's options cannot be set");
    }
    // World::waitUntilStarted() reads the former's debug lines, journalHasThePriorities() a warning of the
    // latter.
    QTextStream(&file) << "NETWORK_MANAGER_OPTIONS=\"--device " << keyboardDevice << "\"\n"
                       << "QT_LOGGING_RULES=\"NetworkSettings.debug=true;NetworkManager.warning=true\"\n";
    return std::make_unique<SystemService>(QStringLiteral("network-manager"));
}
