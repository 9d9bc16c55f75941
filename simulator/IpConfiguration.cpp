#include "IpConfiguration.h"

#include "ConnmanErrors.h"
#include "ConnmanWire.h"
#include <QDBusArgument>
#include <QHostAddress>

namespace simulator {

namespace {
const QString prefixLength = QStringLiteral("PrefixLength");
const QString privacy = QStringLiteral("Privacy");

IpConfiguration refused(const ErrorReply &error)
{
    return {{}, error};
}

IpConfiguration accepted(const QVariantMap &shown)
{
    return {shown, std::nullopt};
}

std::optional<QVariantMap> dictionaryOf(const QVariant &value)
{
    if (value.userType() == QMetaType::QVariantMap) {
        return value.toMap();
    }
    const bool isRaw = value.userType() == qMetaTypeId<QDBusArgument>();
    if (!isRaw || value.value<QDBusArgument>().currentSignature() != QLatin1String("a{sv}")) {
        return std::nullopt;
    }
    return qdbus_cast<QVariantMap>(value);
}

bool isOfType(const QVariantMap &dictionary, const QString &key, QMetaType::Type type)
{
    return !dictionary.contains(key) || dictionary.value(key).userType() == type;
}

bool hasRightTypes(const QVariantMap &dictionary)
{
    return isOfType(dictionary, connman::methodKey, QMetaType::QString) &&
           isOfType(dictionary, connman::addressKey, QMetaType::QString) &&
           isOfType(dictionary, connman::netmaskKey, QMetaType::QString) &&
           isOfType(dictionary, connman::gatewayKey, QMetaType::QString) &&
           isOfType(dictionary, privacy, QMetaType::QString) &&
           isOfType(dictionary, prefixLength, QMetaType::UChar);
}

bool isAddress(const QVariantMap &dictionary, const QString &key,
               QAbstractSocket::NetworkLayerProtocol protocol)
{
    return !dictionary.contains(key) || QHostAddress(dictionary.value(key).toString()).protocol() == protocol;
}

QVariantMap picked(const QVariantMap &dictionary, const QStringList &keys)
{
    QVariantMap result;
    for (const QString &key : keys) {
        if (dictionary.contains(key)) {
            result.insert(key, dictionary.value(key));
        }
    }
    return result;
}

QVariantMap withPrivacy(QVariantMap shown, const QVariantMap &dictionary)
{
    shown.insert(privacy, dictionary.value(privacy, QStringLiteral("disabled")));
    return shown;
}

IpConfiguration manualIpv4(const QVariantMap &dictionary)
{
    const bool isValid = isAddress(dictionary, connman::addressKey, QAbstractSocket::IPv4Protocol) &&
                         isAddress(dictionary, connman::netmaskKey, QAbstractSocket::IPv4Protocol) &&
                         isAddress(dictionary, connman::gatewayKey, QAbstractSocket::IPv4Protocol);
    if (!isValid) {
        return refused(error::invalidArguments);
    }
    QVariantMap shown = picked(
        dictionary, {connman::methodKey, connman::addressKey, connman::netmaskKey, connman::gatewayKey});
    if (shown.contains(connman::addressKey) && !shown.contains(connman::netmaskKey)) {
        shown.insert(connman::netmaskKey, QStringLiteral("255.255.255.255"));
    }
    return accepted(shown);
}

IpConfiguration manualIpv6(const QVariantMap &dictionary)
{
    constexpr int longestPrefix = 128;
    const bool isValid = dictionary.contains(connman::addressKey) &&
                         isAddress(dictionary, connman::addressKey, QAbstractSocket::IPv6Protocol) &&
                         isAddress(dictionary, connman::gatewayKey, QAbstractSocket::IPv6Protocol) &&
                         dictionary.value(prefixLength).toInt() <= longestPrefix;
    if (!isValid) {
        return refused(error::invalidArguments);
    }
    QVariantMap shown = withPrivacy(
        picked(dictionary, {connman::methodKey, connman::addressKey, connman::gatewayKey}), dictionary);
    shown.insert(prefixLength, QVariant::fromValue(dictionary.value(prefixLength).value<uchar>()));
    return accepted(shown);
}
} // namespace

IpConfiguration IpConfiguration::ipv4(const QVariant &value)
{
    const std::optional<QVariantMap> dictionary = dictionaryOf(value);
    if (!dictionary || !hasRightTypes(*dictionary)) {
        return refused(error::invalidArguments);
    }
    const QString wanted = dictionary->value(connman::methodKey).toString();
    if (wanted == QLatin1String("off") || wanted == QLatin1String("dhcp")) {
        return accepted({{connman::methodKey, wanted}});
    }
    if (wanted == QLatin1String("manual")) {
        return manualIpv4(*dictionary);
    }
    return refused(wanted == QLatin1String("auto") ? error::notSupported : error::invalidArguments);
}

IpConfiguration IpConfiguration::ipv6(const QVariant &value)
{
    const std::optional<QVariantMap> dictionary = dictionaryOf(value);
    if (!dictionary || !hasRightTypes(*dictionary)) {
        return refused(error::invalidArguments);
    }
    const QString wanted = dictionary->value(connman::methodKey).toString();
    if (wanted == QLatin1String("off")) {
        return accepted({{connman::methodKey, wanted}});
    }
    if (wanted == QLatin1String("auto")) {
        return accepted(withPrivacy({{connman::methodKey, wanted}}, *dictionary));
    }
    if (wanted == QLatin1String("manual")) {
        return manualIpv6(*dictionary);
    }
    return refused(wanted == QLatin1String("dhcp") ? error::notSupported : error::invalidArguments);
}

std::optional<QStringList> stringsOf(const QVariant &value)
{
    if (value.userType() == QMetaType::QStringList) {
        return value.toStringList();
    }
    const bool isArray = value.userType() == QMetaType::QByteArray ||
                         (value.userType() == qMetaTypeId<QDBusArgument>() &&
                          value.value<QDBusArgument>().currentSignature().startsWith(QLatin1Char('a')));
    return isArray ? std::make_optional(QStringList()) : std::nullopt;
}

QStringList onlyAddresses(const QStringList &addresses)
{
    QStringList result;
    for (const QString &each : addresses) {
        if (!QHostAddress(each).isNull()) {
            result.append(each);
        }
    }
    return result;
}

} // namespace simulator
