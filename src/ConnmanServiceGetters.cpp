// The typed getters of ConnmanService over its property cache.

#include "ConnmanService.h"

#include "ConnmanNames.h"
#include "ConnmanServiceLog.h"

#include <algorithm>
#include <iterator>

namespace {

/// One value of an IP configuration as text; `emptyText` is the complaint about an empty configuration.
QString configurationValue(const QVariantMap &configuration, const QString &key, const char *emptyText)
{
    if (configuration.isEmpty()) {
        qCCritical(logConnmanServiceProperties) << emptyText;
        return {};
    }
    const auto value = configuration.constFind(key);
    if (value == configuration.cend()) {
        qCCritical(logConnmanServiceProperties) << "Missing property" << key;
        return {};
    }
    if (!value->canConvert<QString>()) {
        qCCritical(logConnmanServiceProperties) << "Invalid type of property" << key;
        return {};
    }
    return value->toString();
}

/// The method in force, or the configured one while there is none.
QString ipv4Method(const QVariantMap &active, const QVariantMap &configured)
{
    return active.contains(ConnmanNames::Method) ? active.value(ConnmanNames::Method).toString()
                                                 : configured.value(ConnmanNames::Method).toString();
}

} // namespace

std::optional<QVariant> ConnmanService::property(const QString &key, int requiredType) const
{
    if (m_properties.contains(key)) {
        return existingProperty(key, requiredType);
    }
    qCCritical(logConnmanServiceProperties) << "Missing property" << key << "of service" << m_path;
    return std::nullopt;
}

std::optional<QVariant> ConnmanService::existingProperty(const QString &key, int requiredType) const
{
    const QVariant value = m_properties.value(key);
    if (value.canConvert(requiredType)) {
        return value;
    }
    qCCritical(logConnmanServiceProperties) << "Invalid type of property" << key << "of service" << m_path;
    return std::nullopt;
}

QVariantMap ConnmanService::dictionary(const QString &key) const
{
    return property(key, QMetaType::QVariantMap).value_or(QVariant()).toMap();
}

QVariantMap ConnmanService::optionalDictionary(const QString &key) const
{
    return m_properties.contains(key) ? dictionary(key) : QVariantMap();
}

int ConnmanService::strength() const
{
    constexpr int UnknownStrength = -1;
    const auto value = property(QStringLiteral("Strength"), QMetaType::Int);
    if (!value) {
        return UnknownStrength;
    }
    bool converted = false;
    const int strength = value->toInt(&converted);
    if (converted) {
        return strength;
    }
    qCCritical(logConnmanServiceProperties) << "Unable to convert value for"
                                            << "Strength"
                                            << "to integer for service" << m_path;
    return UnknownStrength;
}

bool ConnmanService::isFavorite() const
{
    return property(QStringLiteral("Favorite"), QMetaType::Bool).value_or(false).toBool();
}

bool ConnmanService::getAutoConnect() const
{
    return property(QStringLiteral("AutoConnect"), QMetaType::Bool).value_or(false).toBool();
}

QStringList ConnmanService::security() const
{
    return property(QStringLiteral("Security"), QMetaType::QStringList).value_or(QVariant()).toStringList();
}

QList<QHostAddress> ConnmanService::getNameservers() const
{
    const QStringList texts =
        property(QStringLiteral("Nameservers"), QMetaType::QStringList).value_or(QVariant()).toStringList();
    QList<QHostAddress> servers;
    std::transform(texts.cbegin(), texts.cend(), std::back_inserter(servers),
                   [](const QString &text) { return QHostAddress(text); });
    return servers;
}

QString ConnmanService::name() const
{
    const QString key = QStringLiteral("Name");
    if (!m_properties.contains(key)) {
        return {};
    }
    return existingProperty(key, QMetaType::QString).value_or(QVariant()).toString();
}

QString ConnmanService::type() const
{
    return property(QStringLiteral("Type"), QMetaType::QString).value_or(QVariant()).toString();
}

QString ConnmanService::interface() const
{
    const auto ethernet = property(QStringLiteral("Ethernet"), QMetaType::QVariantMap);
    if (!ethernet) {
        return {};
    }
    const QVariantMap entries = ethernet->toMap();
    const auto entry = entries.constFind(QStringLiteral("Interface"));
    if (entry == entries.cend()) {
        qCCritical(logConnmanServiceProperties) << "Missing sub-property"
                                                << "Interface"
                                                << "in property"
                                                << "Ethernet"
                                                << "of service" << m_path;
        return {};
    }
    if (!entry->canConvert<QString>()) {
        qCCritical(logConnmanServiceProperties) << "Invalid type of sub-property"
                                                << "Interface"
                                                << "in property"
                                                << "Ethernet"
                                                << "of service" << m_path;
        return {};
    }
    return entry->toString();
}

QVariantMap ConnmanService::getIpv4Configuration() const
{
    const auto inUse = property(ConnmanNames::Ipv4, QMetaType::QVariantMap);
    if (!inUse) {
        return {};
    }
    const QVariantMap active = inUse->toMap();
    const QVariantMap configured = optionalDictionary(ConnmanNames::Ipv4Configuration);
    const QString method = ipv4Method(active, configured);
    if (method == QLatin1String("dhcp") || method == QLatin1String("auto")) {
        return active.isEmpty() ? configured : active;
    }
    // What the user set, even while ConnMan still reports other values.
    if (method == QLatin1String("manual")) {
        return configured;
    }
    qCCritical(logConnmanServiceProperties) << "Value of"
                                            << "Method"
                                            << "is invalid";
    return {};
}

QString ConnmanService::getIpv4ConfigurationValue(const QString &key) const
{
    return configurationValue(getIpv4Configuration(), key, "Empty or missing ipv4-configuration.");
}

QVariantMap ConnmanService::getIpv6Configuration() const
{
    QVariantMap configuration = dictionary(ConnmanNames::Ipv6Configuration);
    const auto prefixLength = configuration.find(ConnmanNames::PrefixLength);
    // A byte on the bus, which Qt would turn into a character instead of a number's text.
    if (prefixLength != configuration.end()) {
        *prefixLength = prefixLength->toInt();
    }
    qCDebug(logConnmanServiceProperties) << configuration;
    return configuration;
}

QString ConnmanService::getIpv6ConfigurationValue(const QString &key) const
{
    return configurationValue(getIpv6Configuration(), key, "Empty or missing ipv6-configuration.");
}

QVariantMap ConnmanService::getUpdatedIpv6Configuration()
{
    dbusUpdateProperties();
    return getIpv6Configuration();
}
