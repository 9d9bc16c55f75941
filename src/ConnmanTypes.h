#pragma once

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QVariantMap>
#include <QVector>

/// One (object path, properties) record of ConnMan's "GetServices", "GetTechnologies" and
/// "ServicesChanged", D-Bus signature (oa{sv}).
struct ConnmanServiceInfo
{
    QDBusObjectPath path;
    QVariantMap properties;
};

/// The records in ConnMan's order, D-Bus signature a(oa{sv}).
using ConnmanServiceInfoList = QVector<ConnmanServiceInfo>;

Q_DECLARE_METATYPE(ConnmanServiceInfo)
Q_DECLARE_METATYPE(ConnmanServiceInfoList)

QDBusArgument &operator<<(QDBusArgument &argument, const ConnmanServiceInfo &info);
const QDBusArgument &operator>>(const QDBusArgument &argument, ConnmanServiceInfo &info);
QDBusArgument &operator<<(QDBusArgument &argument, const ConnmanServiceInfoList &list);
const QDBusArgument &operator>>(const QDBusArgument &argument, ConnmanServiceInfoList &list);
QDebug operator<<(QDebug debug, const ConnmanServiceInfo &info);

/// Makes both types known to Qt's type system and to Qt D-Bus. Call it before the first D-Bus call
/// that carries one of them; calling it again is harmless.
void registerConnmanTypes();
