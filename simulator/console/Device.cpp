#include "Device.h"

#include <QFile>
#include <QStandardPaths>

namespace {
const QString connectionName = QStringLiteral("console");
const QString connmanctl = QStringLiteral("connmanctl");
} // namespace

Device::Device()
    : m_connection(QDBusConnection::connectToBus(m_bus.address(), connectionName))
    , m_simulator(m_bus.address(), test_support::SimulatorClient::Timings::Real)
    , m_daemon(m_bus.address())
{
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
    return m_connection.isConnected() && m_simulator.isReady();
}
