#include "DBusArgument.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusVariant>

namespace libtactora {

namespace {

QString keyText(const QVariant &key)
{
    if (key.userType() == qMetaTypeId<QDBusObjectPath>()) {
        return key.value<QDBusObjectPath>().path();
    }
    if (key.userType() == qMetaTypeId<QDBusSignature>()) {
        return key.value<QDBusSignature>().signature();
    }
    if (key.userType() == QMetaType::UChar) {
        return QString::number(key.toUInt()); // QVariant would make it a character
    }
    return key.toString();
}

// NOLINTBEGIN(misc-no-recursion): a message is nested no deeper than the 64 levels that libdbus lets through

// The readers below take one element at a time as QDBusArgument::asVariant() has it, which never goes wrong:
// containers come as a raw argument of their own. Operators that expect a certain type would crash on
// another.

QVariantMap readMap(const QDBusArgument &argument)
{
    QVariantMap map;
    argument.beginMap();
    while (!argument.atEnd()) {
        argument.beginMapEntry();
        const QString key = keyText(argument.asVariant());
        map.insert(key, dbusArgumentUnpack(argument.asVariant()));
        argument.endMapEntry();
    }
    argument.endMap();
    return map;
}

QVariantList readElements(const QDBusArgument &argument)
{
    QVariantList list;
    while (!argument.atEnd()) {
        list.append(dbusArgumentUnpack(argument.asVariant()));
    }
    return list;
}

QVariantList readArray(const QDBusArgument &argument)
{
    argument.beginArray();
    const QVariantList list = readElements(argument);
    argument.endArray();
    return list;
}

QVariantList readStructure(const QDBusArgument &argument)
{
    argument.beginStructure();
    const QVariantList list = readElements(argument);
    argument.endStructure();
    return list;
}

QVariant unpackArgument(const QDBusArgument &argument)
{
    switch (argument.currentType()) {
    case QDBusArgument::MapType:
        return readMap(argument);
    case QDBusArgument::ArrayType:
        return readArray(argument);
    case QDBusArgument::StructureType:
        return readStructure(argument);
    case QDBusArgument::BasicType:
    case QDBusArgument::VariantType:
        return dbusArgumentUnpack(argument.asVariant());
    case QDBusArgument::MapEntryType:
    case QDBusArgument::UnknownType:
        break;
    }
    return QVariant::fromValue(argument); // nothing received: one being written, or at its end
}

QVariantList unpackList(const QVariantList &values)
{
    QVariantList list;
    list.reserve(values.size());
    for (const QVariant &value : values) {
        list.append(dbusArgumentUnpack(value));
    }
    return list;
}

} // namespace

QVariant dbusArgumentUnpack(const QVariant &value)
{
    if (value.userType() == qMetaTypeId<QDBusArgument>()) {
        return unpackArgument(value.value<QDBusArgument>());
    }
    if (value.userType() == qMetaTypeId<QDBusVariant>()) {
        return dbusArgumentUnpack(value.value<QDBusVariant>().variant());
    }
    if (value.userType() == QMetaType::QVariantMap) {
        return dbusArgumentUnpack(value.toMap());
    }
    if (value.userType() == QMetaType::QVariantList) {
        return unpackList(value.toList());
    }
    return value;
}

QVariantMap dbusArgumentUnpack(const QVariantMap &map)
{
    QVariantMap unpacked;
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        unpacked.insert(entry.key(), dbusArgumentUnpack(entry.value()));
    }
    return unpacked;
}

// NOLINTEND(misc-no-recursion)

} // namespace libtactora
