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

QStringList ConnmanService::stringList(const QString &key) const
{
    return m_properties.find(key, QMetaType::QStringList).value_or(QVariant()).toStringList();
}

QString ConnmanService::string(const QString &key) const
{
    return m_properties.find(key, QMetaType::QString).value_or(QVariant()).toString();
}

bool ConnmanService::flag(const QString &key) const
{
    return m_properties.find(key, QMetaType::Bool).value_or(false).toBool();
}

int ConnmanService::strength() const
{
    constexpr int UnknownStrength = -1;
    const auto value = m_properties.find(QStringLiteral("Strength"), QMetaType::Int);
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
                                            << "to integer for service" << path();
    return UnknownStrength;
}

bool ConnmanService::isFavorite() const
{
    return flag(QStringLiteral("Favorite"));
}

bool ConnmanService::getAutoConnect() const
{
    return flag(QStringLiteral("AutoConnect"));
}

QStringList ConnmanService::security() const
{
    return stringList(QStringLiteral("Security"));
}

QList<QHostAddress> ConnmanService::getNameservers() const
{
    const QStringList texts = stringList(QStringLiteral("Nameservers"));
    QList<QHostAddress> servers;
    std::transform(texts.cbegin(), texts.cend(), std::back_inserter(servers),
                   [](const QString &text) { return QHostAddress(text); });
    return servers;
}

QString ConnmanService::name() const
{
    return m_properties.findOptional(QStringLiteral("Name"), QMetaType::QString)
        .value_or(QVariant())
        .toString();
}

QString ConnmanService::type() const
{
    return string(QStringLiteral("Type"));
}

QString ConnmanService::interface() const
{
    const auto ethernet = m_properties.find(ConnmanNames::Ethernet, QMetaType::QVariantMap);
    if (!ethernet) {
        return {};
    }
    const QVariantMap entries = ethernet->toMap();
    const auto entry = entries.constFind(QStringLiteral("Interface"));
    if (entry != entries.cend() && entry->canConvert<QString>()) {
        return entry->toString();
    }
    qCCritical(logConnmanServiceProperties)
        << (entry == entries.cend() ? "Missing sub-property" : "Invalid type of sub-property") << "Interface"
        << "in property" << ConnmanNames::Ethernet.data() << "of service" << path();
    return {};
}

QVariantMap ConnmanService::getIpv4Configuration() const
{
    const auto inUse = m_properties.find(ConnmanNames::Ipv4, QMetaType::QVariantMap);
    if (!inUse) {
        return {};
    }
    const QVariantMap active = inUse->toMap();
    const QVariantMap configured =
        m_properties.findOptional(ConnmanNames::Ipv4Configuration, QMetaType::QVariantMap)
            .value_or(QVariant())
            .toMap();
    const QString method = ipv4Method(active, configured);
    if (method == ConnmanNames::Dhcp || method == ConnmanNames::Auto) {
        return active.isEmpty() ? configured : active;
    }
    // What the user set, even while ConnMan still reports other values.
    if (method == ConnmanNames::Manual) {
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
    QVariantMap configuration = m_properties.find(ConnmanNames::Ipv6Configuration, QMetaType::QVariantMap)
                                    .value_or(QVariant())
                                    .toMap();
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
