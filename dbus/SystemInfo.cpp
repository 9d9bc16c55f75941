#include "SystemInfo.h"

#include "ConfigurationManagerKeys.h"

#include <libtactora/DBusArgument.h>

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDebug>

namespace detail {

SystemInfo::SystemInfo(QObject *parent)
    : QObject(parent)
    , m_interface(std::make_unique<QDBusInterface>(
          ConfigurationManager::ServiceName, ConfigurationManager::ObjectPath,
          ConfigurationManager::ServiceName, QDBusConnection::systemBus()))
{
    if (!m_interface->isValid()) {
        qCritical() << "Critical error!" << ConfigurationManager::ServiceName << "interface is not valid.";
    }
}

SystemInfo::~SystemInfo() = default;

QVariantMap SystemInfo::process(const QVariantMap &request) const
{
    if (!m_interface->isValid()) {
        qCritical() << "SystemInfo::process ERROR: interface is not valid.";
        return {};
    }
    const QDBusReply<QVariantMap> reply = m_interface->call(QStringLiteral("process"), request);
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
