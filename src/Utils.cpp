#include "Utils.h"

#include <QDBusArgument>
#include <QLoggingCategory>
#include <QSet>

namespace {

Q_LOGGING_CATEGORY(logUtils, "Utils", QtCriticalMsg)

/// Thousands of dictionaries have the same few keys: each is held once. Not without limit, for a peer may
/// send any.
QString pooled(const QString &key)
{
    constexpr int Limit = 256;
    static QSet<QString> pool;
    const auto known = pool.constFind(key);
    if (known != pool.cend()) {
        return *known;
    }
    if (pool.size() < Limit) {
        pool.insert(key);
    }
    return key;
}

bool isRawArgument(const QVariant &value)
{
    return value.userType() == qMetaTypeId<QDBusArgument>();
}

} // namespace

QVariant Utils::convertDBusArgument(const QVariant &value)
{
    if (value.type() != QVariant::UserType) {
        return value;
    }
    if (const auto dictionary = rawDictionary(value)) {
        return *dictionary;
    }
    if (!isRawArgument(value)) {
        qCWarning(logUtils) << "Unknown QVariant::UserType:" << value.userType();
    }
    return value;
}

std::optional<QVariantMap> Utils::rawDictionary(const QVariant &value)
{
    if (!isRawArgument(value)) {
        return std::nullopt;
    }
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("a{sv}")) {
        return std::nullopt;
    }

    return readDictionary(argument);
}

QVariantMap Utils::readDictionary(const QDBusArgument &argument)
{
    QVariantMap dictionary;
    argument.beginMap();
    while (!argument.atEnd()) {
        QString key;
        QVariant value;
        argument.beginMapEntry();
        argument >> key >> value;
        argument.endMapEntry();
        dictionary.insert(pooled(key), value);
    }
    argument.endMap();
    return dictionary;
}
