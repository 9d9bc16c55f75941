#include "IpConfiguration.h"

#include "ConnmanErrors.h"
#include <QDBusArgument>
#include <QHostAddress>

namespace simulator {

namespace {
const QString method = QStringLiteral("Method");
const QString address = QStringLiteral("Address");
const QString netmask = QStringLiteral("Netmask");
const QString gateway = QStringLiteral("Gateway");
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
    return isOfType(dictionary, method, QMetaType::QString) &&
           isOfType(dictionary, address, QMetaType::QString) &&
           isOfType(dictionary, netmask, QMetaType::QString) &&
           isOfType(dictionary, gateway, QMetaType::QString) &&
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
    const bool isValid = isAddress(dictionary, address, QAbstractSocket::IPv4Protocol) &&
                         isAddress(dictionary, netmask, QAbstractSocket::IPv4Protocol) &&
                         isAddress(dictionary, gateway, QAbstractSocket::IPv4Protocol);
    if (!isValid) {
        return refused(error::invalidArguments);
    }
    QVariantMap shown = picked(dictionary, {method, address, netmask, gateway});
    if (shown.contains(address) && !shown.contains(netmask)) {
        shown.insert(netmask, QStringLiteral("255.255.255.255"));
    }
    return accepted(shown);
}

IpConfiguration manualIpv6(const QVariantMap &dictionary)
{
    constexpr int longestPrefix = 128;
    const bool isValid = dictionary.contains(address) &&
                         isAddress(dictionary, address, QAbstractSocket::IPv6Protocol) &&
                         isAddress(dictionary, gateway, QAbstractSocket::IPv6Protocol) &&
                         dictionary.value(prefixLength).toInt() <= longestPrefix;
    if (!isValid) {
        return refused(error::invalidArguments);
    }
    QVariantMap shown = withPrivacy(picked(dictionary, {method, address, gateway}), dictionary);
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
    const QString wanted = dictionary->value(method).toString();
    if (wanted == QLatin1String("off") || wanted == QLatin1String("dhcp")) {
        return accepted({{method, wanted}});
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
    const QString wanted = dictionary->value(method).toString();
    if (wanted == QLatin1String("off")) {
        return accepted({{method, wanted}});
    }
    if (wanted == QLatin1String("auto")) {
        return accepted(withPrivacy({{method, wanted}}, *dictionary));
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
