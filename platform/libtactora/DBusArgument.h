#pragma once

#include <QVariant>

namespace libtactora {

/// Turns a value received over D-Bus into plain Qt values, at any depth: every raw D-Bus argument
/// (QDBusArgument) and every QDBusVariant in it is replaced by its content. Values that hold neither come
/// back unchanged. Never fails, whatever the signature.
///
///  - a dictionary becomes a QVariantMap; a key that is no string is written as text
///  - an array becomes a QVariantList, but as QtDBus has it `as` is a QStringList and `ay` a QByteArray
///  - a structure becomes the QVariantList of its members
///  - a variant becomes its content
///  - everything else is as QtDBus has it: `o` is a QDBusObjectPath, `h` a QDBusUnixFileDescriptor
QVariant dbusArgumentUnpack(const QVariant &value);

/// The same for each value of a dictionary.
QVariantMap dbusArgumentUnpack(const QVariantMap &map);

} // namespace libtactora
