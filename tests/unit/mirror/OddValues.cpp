#include "OddValues.h"
#include "Text.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace {

void appendEntry(QDBusArgument &argument, const QString &key, const QString &value)
{
    argument.beginMapEntry();
    argument << key << QDBusVariant(value);
    argument.endMapEntry();
}

} // namespace

// Found by argument-dependent look-up from Qt's templates, so not in the unnamed namespace.

static QDBusArgument &operator<<(QDBusArgument &argument, const OddPair &pair)
{
    argument.beginStructure();
    argument << pair.text << pair.number;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, OddPair &pair)
{
    argument.beginStructure();
    argument >> pair.text >> pair.number;
    argument.endStructure();
    return argument;
}

static QDBusArgument &operator<<(QDBusArgument &argument, const RepeatedKey &repeated)
{
    argument.beginMap(QMetaType::QString, qMetaTypeId<QDBusVariant>());
    appendEntry(argument, repeated.key, repeated.first);
    appendEntry(argument, repeated.key, repeated.second);
    argument.endMap();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, RepeatedKey & /*onlyEverSent*/)
{
    return argument;
}

void registerOddTypes()
{
    qDBusRegisterMetaType<OddPair>();
    qDBusRegisterMetaType<RepeatedKey>();
    qDBusRegisterMetaType<TextMap>();
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

QVector<OddValue> rawOddValues()
{
    registerOddTypes();
    const OddPair pair{"text"_s, 7};
    const QList<QDBusObjectPath> paths{QDBusObjectPath("/a"_s), QDBusObjectPath("/b"_s)};
    const TextMap texts{{"Method"_s, "dhcp"_s}};
    const QVariantList variants{"text"_s, 7};
    const QList<QVariantMap> maps{{{"Method"_s, "dhcp"_s}}};
    return {
        {"ai", QVariant::fromValue(QList<int>{1, 2})},
        {"ai", QVariant::fromValue(QList<int>{})},
        {"(si)", QVariant::fromValue(pair)},
        {"ao", QVariant::fromValue(paths)},
        {"a{ss}", QVariant::fromValue(texts)},
        {"a{ss}", QVariant::fromValue(TextMap{})},
        {"av", variants},
        {"aa{sv}", QVariant::fromValue(maps)},
    };
}
