#include "Device.h"

#include "DaemonInterface.h"
#include <QDBusConnectionInterface>
#include <QFile>
#include <QStandardPaths>

namespace {
const QString connectionName = QStringLiteral("console");
const QString connmanctl = QStringLiteral("connmanctl");
} // namespace

Device::Device()
    : m_connection(QDBusConnection::connectToBus(m_bus.address(), connectionName))
    , m_scenery(m_bus.address(), m_connection)
    , m_daemon(m_bus.address())
{
    m_scenery.prepare(sandbox());
    const QString realConnmanctl = QStandardPaths::findExecutable(connmanctl);
    if (!realConnmanctl.isEmpty()) {
        sandbox().commands().removeProgram(connmanctl);
        QFile::link(realConnmanctl, sandbox().commands().path() + QLatin1Char('/') + connmanctl);
    }
}

Device::~Device()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

bool Device::isReady() const
{
    return m_connection.isConnected() && m_scenery.isReady();
}

bool Device::isStarting() const
{
    return m_daemon.isRunning() && !m_connection.interface()->isServiceRegistered(daemonName());
}

void Device::switchOff()
{
    // It may be on its way out already: Ctrl-C reaches every program of the terminal.
    if (m_daemon.isRunning() && !m_daemon.stop()) {
        m_daemon.waitForExit();
    }
}
