#include "ConnmanWire.h"

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QStringList>

namespace simulator {

namespace {
const QStringList managerOrder{QStringLiteral("State"), QStringLiteral("OfflineMode"),
                               QStringLiteral("SessionMode")};

const QStringList serviceOrder{
    QStringLiteral("Type"),        QStringLiteral("Security"),
    QStringLiteral("State"),       QStringLiteral("Error"),
    QStringLiteral("Strength"),    QStringLiteral("Favorite"),
    QStringLiteral("Immutable"),   QStringLiteral("AutoConnect"),
    QStringLiteral("Name"),        QStringLiteral("Ethernet"),
    QStringLiteral("IPv4"),        QStringLiteral("IPv4.Configuration"),
    QStringLiteral("IPv6"),        QStringLiteral("IPv6.Configuration"),
    QStringLiteral("Nameservers"), QStringLiteral("Nameservers.Configuration"),
    QStringLiteral("Timeservers"), QStringLiteral("Timeservers.Configuration"),
    QStringLiteral("Domains"),     QStringLiteral("Domains.Configuration"),
    QStringLiteral("Proxy"),       QStringLiteral("Proxy.Configuration"),
    QStringLiteral("mDNS"),        QStringLiteral("mDNS.Configuration"),
    QStringLiteral("Provider"),
};

const QStringList technologyOrder{
    QStringLiteral("Name"),
    QStringLiteral("Type"),
    QStringLiteral("Powered"),
    QStringLiteral("Connected"),
    QStringLiteral("Tethering"),
    QStringLiteral("TetheringIdentifier"),
    QStringLiteral("TetheringPassphrase"),
    QStringLiteral("TetheringFreq"),
};

PropertyDict ordered(QVariantMap properties, const QStringList &order)
{
    PropertyDict dict;
    dict.entries.reserve(properties.size());
    for (const QString &key : order) {
        const auto found = properties.find(key);
        if (found != properties.end()) {
            dict.entries.append({key, *found});
            properties.erase(found);
        }
    }
    for (auto unknown = properties.cbegin(); unknown != properties.cend(); ++unknown) {
        dict.entries.append({unknown.key(), unknown.value()});
    }
    return dict;
}
} // namespace

PropertyDict managerDict(const QVariantMap &properties)
{
    return ordered(properties, managerOrder);
}

PropertyDict serviceDict(const QVariantMap &properties)
{
    return ordered(properties, serviceOrder);
}

PropertyDict technologyDict(const QVariantMap &properties)
{
    return ordered(properties, technologyOrder);
}

QDBusArgument &operator<<(QDBusArgument &argument, const PropertyDict &dict)
{
    argument.beginMap(QMetaType::QString, qMetaTypeId<QDBusVariant>());
    for (const auto &[key, value] : dict.entries) {
        argument.beginMapEntry();
        argument << key << QDBusVariant(value);
        argument.endMapEntry();
    }
    argument.endMap();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PropertyDict &dict)
{
    dict.entries.clear();
    argument.beginMap();
    while (!argument.atEnd()) {
        QString key;
        QDBusVariant value;
        argument.beginMapEntry();
        argument >> key >> value;
        argument.endMapEntry();
        dict.entries.append({key, value.variant()});
    }
    argument.endMap();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const ObjectRecord &record)
{
    argument.beginStructure();
    argument << record.path << record.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ObjectRecord &record)
{
    argument.beginStructure();
    argument >> record.path >> record.properties;
    argument.endStructure();
    return argument;
}

void registerWireTypes()
{
    qDBusRegisterMetaType<PropertyDict>();
    qDBusRegisterMetaType<ObjectRecord>();
    qDBusRegisterMetaType<ObjectRecordList>();
}

} // namespace simulator
