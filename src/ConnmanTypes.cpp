#include "ConnmanTypes.h"

#include "Utils.h"

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDebug>

QDBusArgument &operator<<(QDBusArgument &argument, const ConnmanServiceInfo &info)
{
    argument.beginStructure();
    argument << info.path;
    argument.beginMap(QMetaType::QString, qMetaTypeId<QDBusVariant>());
    for (auto it = info.properties.cbegin(); it != info.properties.cend(); ++it) {
        argument.beginMapEntry();
        argument << it.key() << QDBusVariant(it.value());
        argument.endMapEntry();
    }
    argument.endMap();
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ConnmanServiceInfo &info)
{
    argument.beginStructure();
    argument >> info.path;
    info.properties = Utils::readDictionary(argument);
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const ConnmanServiceInfoList &list)
{
    argument.beginArray(qMetaTypeId<ConnmanServiceInfo>());
    for (const ConnmanServiceInfo &info : list) {
        argument << info;
    }
    argument.endArray();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ConnmanServiceInfoList &list)
{
    argument.beginArray();
    list.clear();
    while (!argument.atEnd()) {
        ConnmanServiceInfo info;
        argument >> info;
        list.append(info);
    }
    argument.endArray();
    return argument;
}

QDebug operator<<(QDebug debug, const ConnmanServiceInfo &info)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "ConnmanServiceInfo(" << info.path.path() << ", " << info.properties << ")";
    return debug;
}

void registerConnmanTypes()
{
    qRegisterMetaType<ConnmanServiceInfo>("ConnmanServiceInfo");
    qRegisterMetaType<ConnmanServiceInfoList>("ConnmanServiceInfoList");
    qDBusRegisterMetaType<ConnmanServiceInfo>();
    qDBusRegisterMetaType<ConnmanServiceInfoList>();
}
