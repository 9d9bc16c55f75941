#include "PlainValue.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace test_support {

namespace {

QVariantMap plainMap(QVariantMap map)
{
    for (QVariant &value : map) {
        value = plain(value);
    }
    return map;
}

QVariantMap entriesOf(const QDBusArgument &map)
{
    QVariantMap entries;
    map.beginMap();
    while (!map.atEnd()) {
        map.beginMapEntry();
        const QString key = plain(map.asVariant()).toString();
        entries.insert(key, plain(map.asVariant()));
        map.endMapEntry();
    }
    map.endMap();
    return entries;
}

QVariantList elementsOf(const QDBusArgument &argument)
{
    QVariantList elements;
    while (!argument.atEnd()) {
        elements << plain(argument.asVariant());
    }
    return elements;
}

QVariant plainArgument(const QDBusArgument &argument)
{
    QVariantList elements;
    switch (argument.currentType()) {
    case QDBusArgument::MapType:
        return entriesOf(argument);
    case QDBusArgument::ArrayType:
        argument.beginArray();
        elements = elementsOf(argument);
        argument.endArray();
        return elements;
    case QDBusArgument::StructureType:
        argument.beginStructure();
        elements = elementsOf(argument);
        argument.endStructure();
        return elements;
    case QDBusArgument::BasicType:
    case QDBusArgument::VariantType:
    case QDBusArgument::MapEntryType:
    case QDBusArgument::UnknownType:
        break;
    }
    return plain(argument.asVariant());
}

} // namespace

QVariant plain(const QVariant &value)
{
    if (value.userType() == qMetaTypeId<QDBusVariant>()) {
        return plain(value.value<QDBusVariant>().variant());
    }
    if (value.userType() == qMetaTypeId<QDBusObjectPath>()) {
        return value.value<QDBusObjectPath>().path();
    }
    if (value.userType() == qMetaTypeId<QDBusArgument>()) {
        return plainArgument(value.value<QDBusArgument>());
    }
    return value.type() == QVariant::Map ? plainMap(value.toMap()) : value;
}

} // namespace test_support
