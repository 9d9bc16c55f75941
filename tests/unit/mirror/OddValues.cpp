#include "OddValues.h"

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
    const OddPair pair{QStringLiteral("text"), 7};
    const QList<QDBusObjectPath> paths{QDBusObjectPath(QStringLiteral("/a")),
                                       QDBusObjectPath(QStringLiteral("/b"))};
    const TextMap texts{{QStringLiteral("Method"), QStringLiteral("dhcp")}};
    const QVariantList variants{QStringLiteral("text"), 7};
    const QList<QVariantMap> maps{{{QStringLiteral("Method"), QStringLiteral("dhcp")}}};
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
