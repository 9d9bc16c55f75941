#include "SystemInfo.h"

#include "ConfigurationManagerKeys.h"

#include <libtactora/DBusArgument.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDebug>

namespace detail {

namespace {

/// Asked of the bus: the manager itself may hang.
bool isManagerThere()
{
    const QDBusConnection bus = QDBusConnection::systemBus();
    return bus.isConnected() && bus.interface()->isServiceRegistered(ConfigurationManager::ServiceName);
}

} // namespace

SystemInfo::SystemInfo(QObject *parent)
    : QObject(parent)
{
    if (!isManagerThere()) {
        qCritical() << "Critical error!" << ConfigurationManager::ServiceName << "interface is not valid.";
    }
}

QVariantMap SystemInfo::process(const QVariantMap &request) const
{
    if (!isManagerThere()) {
        qCritical() << "SystemInfo::process ERROR: interface is not valid.";
        return {};
    }
    QDBusMessage call =
        QDBusMessage::createMethodCall(ConfigurationManager::ServiceName, ConfigurationManager::ObjectPath,
                                       ConfigurationManager::ServiceName, QStringLiteral("process"));
    call << request;
    const QDBusReply<QVariantMap> reply = QDBusConnection::systemBus().call(call);
    if (!reply.isValid()) {
        qCritical() << "SystemInfo::process ERROR:"
                    << "reply is not valid" << reply.error().message();
        return {};
    }
    return libtactora::dbusArgumentUnpack(reply.value());
}

int SystemInfo::serialNumber() const
{
    const QVariantMap reply =
        process({{ConfigurationManager::SenderId, 0},
                 {ConfigurationManager::CommandId, ConfigurationManager::SystemInfoCommand},
                 {ConfigurationManager::SubCommandId, 0}});
    const QVariantMap systemInfo = reply.value(ConfigurationManager::SystemInfo).toMap();
    return systemInfo.value(ConfigurationManager::SerialNo).toInt();
}

} // namespace detail
