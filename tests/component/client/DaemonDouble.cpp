#include "DaemonDouble.h"

#include "Values.h"
#include <QDBusMessage>

namespace {
const QString connectionName = QStringLiteral("daemon double");
}

DaemonDouble::DaemonDouble(const QString &busAddress)
    : m_connection(QDBusConnection::connectToBus(busAddress, connectionName))
    , m_isReady(m_connection.registerVirtualObject(QStringLiteral("/"), this) &&
                m_connection.registerService(QStringLiteral("com.tactora.NetworkManager")))
{
}

DaemonDouble::~DaemonDouble()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

QString DaemonDouble::introspect(const QString & /*path*/) const
{
    return {};
}

bool DaemonDouble::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    m_signatures << QStringLiteral("%1(%2)").arg(message.member(), message.signature());
    m_calls << message.member() + QLatin1Char(' ') + valueText(message.arguments());
    return connection.send(message.createReply(m_answer));
}
