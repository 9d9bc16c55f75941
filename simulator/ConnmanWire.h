#pragma once

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QPair>
#include <QVariantMap>
#include <QVector>

namespace simulator {

/// ConnMan's names on the bus.
namespace connman {
inline const QString busName = QStringLiteral("net.connman");
inline const QString managerPath = QStringLiteral("/");
inline const QString managerInterface = QStringLiteral("net.connman.Manager");
inline const QString serviceInterface = QStringLiteral("net.connman.Service");
inline const QString technologyInterface = QStringLiteral("net.connman.Technology");
inline const QString agentInterface = QStringLiteral("net.connman.Agent");
inline const QString servicePrefix = QStringLiteral("/net/connman/service/");
inline const QString technologyPrefix = QStringLiteral("/net/connman/technology/");
inline const QString ipv4Configuration = QStringLiteral("IPv4.Configuration");
inline const QString ipv6Configuration = QStringLiteral("IPv6.Configuration");
inline const QString nameserversConfiguration = QStringLiteral("Nameservers.Configuration");
inline const QString methodKey = QStringLiteral("Method");
inline const QString addressKey = QStringLiteral("Address");
inline const QString netmaskKey = QStringLiteral("Netmask");
inline const QString gatewayKey = QStringLiteral("Gateway");
/// A service's "Error" when its credentials are wrong.
inline const QString invalidKey = QStringLiteral("invalid-key");
/// When it was refused otherwise; what ConnMan says of wrong enterprise credentials and of a wrong WPS PIN
/// too.
inline const QString connectFailed = QStringLiteral("connect-failed");
} // namespace connman

/// A property dictionary (a{sv}) in the order in which it goes onto the bus.
struct PropertyDict
{
    QVector<QPair<QString, QVariant>> entries;
};

/// In the order in which ConnMan writes the properties of that kind of object; unknown ones come last.
PropertyDict managerDict(const QVariantMap &properties);
PropertyDict serviceDict(const QVariantMap &properties);
PropertyDict technologyDict(const QVariantMap &properties);

/// An object with its properties: the (oa{sv}) of GetServices, GetTechnologies and ServicesChanged.
struct ObjectRecord
{
    QDBusObjectPath path;
    PropertyDict properties;
};
using ObjectRecordList = QVector<ObjectRecord>;
using ObjectPathList = QList<QDBusObjectPath>;

QDBusArgument &operator<<(QDBusArgument &argument, const PropertyDict &dict);
const QDBusArgument &operator>>(const QDBusArgument &argument, PropertyDict &dict);
QDBusArgument &operator<<(QDBusArgument &argument, const ObjectRecord &record);
const QDBusArgument &operator>>(const QDBusArgument &argument, ObjectRecord &record);

/// Makes the types above known to the bus library; once, before any is sent.
void registerWireTypes();

} // namespace simulator

Q_DECLARE_METATYPE(simulator::PropertyDict)
Q_DECLARE_METATYPE(simulator::ObjectRecord)
Q_DECLARE_METATYPE(simulator::ObjectRecordList)
