#include "Loopback.h"
#include "Text.h"

#include <QDBusMessage>
#include <QDBusVariant>

namespace {

QString connectionName()
{
    return "loopback"_s;
}

QString objectPath()
{
    return "/loopback"_s;
}

} // namespace

Loopback::Loopback()
    : m_connection(QDBusConnection::connectToBus(m_bus.address(), connectionName()))
{
    m_connection.registerVirtualObject(objectPath(), this);
}

Loopback::~Loopback()
{
    m_connection.unregisterObject(objectPath());
    QDBusConnection::disconnectFromBus(connectionName());
}

QVariant Loopback::argument(const QVariant &sent)
{
    m_received.clear();
    QDBusMessage call =
        QDBusMessage::createMethodCall(m_connection.baseService(), objectPath(), "test.Loopback"_s, "take"_s);
    call << sent;
    m_connection.call(call);
    return m_received;
}

QVariant Loopback::variantContent(const QVariant &sent)
{
    return argument(QVariant::fromValue(QDBusVariant(sent))).value<QDBusVariant>().variant();
}

bool Loopback::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    m_received = message.arguments().value(0);
    connection.send(message.createReply());
    return true;
}

QString Loopback::introspect(const QString & /*path*/) const
{
    return {};
}
