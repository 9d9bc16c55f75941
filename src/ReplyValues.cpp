#include "ReplyValues.h"

#include "NetworkManagerLog.h"

#include <QDBusArgument>
#include <QDBusSignature>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QStringList>

#include <algorithm>

namespace {

/// How many containers (arrays, structures, entries, variants) the bus lets stand inside each other.
constexpr int MaxDepth = 64;

// The containers that each of these makes on the wire.
constexpr int VariantDepth = 1;
constexpr int ArrayDepth = 1;
constexpr int StructureDepth = 1;
constexpr int EntryDepth = ArrayDepth + 1;
constexpr int DictionaryDepth = EntryDepth + VariantDepth;

bool isSendable(const QVariant &value, int depth);

// NOLINTBEGIN(misc-no-recursion): what was received is nested no deeper than MaxDepth

bool areElementsSendable(const QDBusArgument &argument, int depth)
{
    bool sendable = true;
    while (!argument.atEnd()) {
        sendable = isSendable(argument.asVariant(), depth) && sendable;
    }
    return sendable;
}

bool areEntriesSendable(const QDBusArgument &argument, int depth)
{
    bool sendable = true;
    while (!argument.atEnd()) {
        argument.beginMapEntry();
        sendable = areElementsSendable(argument, depth) && sendable;
        argument.endMapEntry();
    }
    return sendable;
}

// A container that has been begun is ended in any case: Qt frees its reader then, and only then.
bool isArgumentSendable(const QDBusArgument &argument, int depth)
{
    bool sendable = false;
    switch (argument.currentType()) {
    case QDBusArgument::MapType:
        argument.beginMap();
        sendable = areEntriesSendable(argument, depth + EntryDepth);
        argument.endMap();
        break;
    case QDBusArgument::ArrayType:
        argument.beginArray();
        sendable = areElementsSendable(argument, depth + ArrayDepth);
        argument.endArray();
        break;
    case QDBusArgument::StructureType:
        argument.beginStructure();
        sendable = areElementsSendable(argument, depth + StructureDepth);
        argument.endStructure();
        break;
    case QDBusArgument::BasicType:
    case QDBusArgument::VariantType:
        sendable = isSendable(argument.asVariant(), depth);
        break;
    case QDBusArgument::MapEntryType:
    case QDBusArgument::UnknownType:
        break;
    }
    return sendable;
}

bool isSendable(const QVariant &value, int depth)
{
    if (depth > MaxDepth) {
        return false;
    }
    const int type = value.userType();
    if (type == QMetaType::QVariantMap) {
        const QVariantMap map = value.toMap();
        return std::all_of(map.cbegin(), map.cend(), [depth](const QVariant &entry) {
            return isSendable(entry, depth + DictionaryDepth);
        });
    }
    if (type == QMetaType::QStringList) {
        return depth + ArrayDepth <= MaxDepth;
    }
    if (type == qMetaTypeId<QDBusVariant>()) {
        return isSendable(value.value<QDBusVariant>().variant(), depth + VariantDepth);
    }
    if (type == qMetaTypeId<QDBusArgument>()) {
        return isArgumentSendable(value.value<QDBusArgument>(), depth);
    }
    if (type == qMetaTypeId<QDBusSignature>()) {
        return !value.value<QDBusSignature>().signature().isEmpty();
    }
    // Not every client can be sent descriptors.
    return type != qMetaTypeId<QDBusUnixFileDescriptor>();
}

// NOLINTEND(misc-no-recursion)

} // namespace

QVariantMap ReplyValues::sendable(const QVariantMap &values, Place place)
{
    QVariantMap result = values;
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        if (!isSendable(entry.value(), static_cast<int>(place))) {
            qCWarning(logNetworkManager)
                << "Left out of the reply, the bus would not take it:" << entry.key();
            result.remove(entry.key());
        }
    }
    return result;
}
