#include "Service.h"

#include "ConnmanWire.h"
#include <QDBusArgument>
#include <QStringList>
#include <QTimer>
#include <utility>

namespace simulator {

namespace {
QString securityOf(const QString &identifier)
{
    return identifier.section(QLatin1Char('_'), -1);
}

QVariantMap commonProperties()
{
    const QVariantMap ipv4Configuration{{connman::methodKey, QStringLiteral("dhcp")}};
    const QVariantMap ipv6Configuration{{connman::methodKey, QStringLiteral("auto")},
                                        {QStringLiteral("Privacy"), QStringLiteral("disabled")}};
    return {{QStringLiteral("State"), QStringLiteral("idle")},
            {QStringLiteral("Immutable"), false},
            {QStringLiteral("IPv4"), QVariantMap()},
            {connman::ipv4Configuration, ipv4Configuration},
            {QStringLiteral("IPv6"), QVariantMap()},
            {connman::ipv6Configuration, ipv6Configuration},
            {QStringLiteral("Nameservers"), QStringList()},
            {QStringLiteral("Nameservers.Configuration"), QStringList()},
            {QStringLiteral("Timeservers"), QStringList()},
            {QStringLiteral("Timeservers.Configuration"), QStringList()},
            {QStringLiteral("Domains"), QStringList()},
            {QStringLiteral("Domains.Configuration"), QStringList()},
            {QStringLiteral("Proxy"), QVariantMap()},
            {QStringLiteral("Proxy.Configuration"), QVariantMap()},
            {QStringLiteral("mDNS"), false},
            {QStringLiteral("mDNS.Configuration"), false},
            {QStringLiteral("Provider"), QVariantMap()}};
}

QVariantMap ethernetDictionary(const QString &interface, const QString &address)
{
    return {{connman::methodKey, QStringLiteral("auto")},
            {QStringLiteral("Interface"), interface},
            {connman::addressKey, address},
            {QStringLiteral("MTU"), QVariant::fromValue<ushort>(1500)}};
}
} // namespace

Service::Service(QString serviceIdentifier)
    : identifier(std::move(serviceIdentifier))
{
}

QString Service::path() const
{
    return connman::servicePrefix + identifier;
}

bool Service::isConnected() const
{
    return state() == QLatin1String("ready") || state() == QLatin1String("online");
}

bool Service::isConnecting() const
{
    return state() == QLatin1String("association") || state() == QLatin1String("configuration");
}

bool Service::isIdle() const
{
    return !isConnected() && !isConnecting();
}

bool Service::hasSecurity(const QString &security) const
{
    return properties.value(QStringLiteral("Security")).toStringList().contains(security);
}

void Service::answerConnect()
{
    if (const std::optional<Call> call = std::exchange(pendingConnect, std::nullopt)) {
        call->reply();
    }
}

void Service::refuseConnect(const ErrorReply &reply)
{
    if (const std::optional<Call> call = std::exchange(pendingConnect, std::nullopt)) {
        call->refuse(reply);
    }
}

QString Service::method(const QString &configuration) const
{
    const QVariant value = properties.value(configuration);
    const auto dictionary = qdbus_cast<QVariantMap>(value);
    return dictionary.value(connman::methodKey).toString();
}

void later(QObject *context, const ServicePtr &service, int milliseconds, const std::function<void()> &step)
{
    QTimer::singleShot(milliseconds, context, [service, attempt = service->attempt, step] {
        if (service->attempt == attempt) {
            step();
        }
    });
}

QVariantMap newServiceProperties(const QString &identifier, const QString &cardAddress)
{
    QVariantMap properties = commonProperties();
    const bool isEthernet = identifier.startsWith(QLatin1String("ethernet_"));
    properties[QStringLiteral("Favorite")] = isEthernet;
    properties[QStringLiteral("AutoConnect")] = isEthernet;
    if (isEthernet) {
        properties[QStringLiteral("Type")] = QStringLiteral("ethernet");
        properties[QStringLiteral("Name")] = QStringLiteral("Wired");
        properties[QStringLiteral("Security")] = QStringList();
        properties[QStringLiteral("Ethernet")] =
            ethernetDictionary(QStringLiteral("eth0"), QStringLiteral("02:00:00:00:01:00"));
    } else {
        properties[QStringLiteral("Type")] = QStringLiteral("wifi");
        properties[QStringLiteral("Name")] = identifier;
        properties[QStringLiteral("Security")] = QStringList{securityOf(identifier)};
        properties[QStringLiteral("Strength")] = QVariant::fromValue<uchar>(60);
        properties[QStringLiteral("Ethernet")] =
            ethernetDictionary(QStringLiteral("wlan0"), cardAddress.toUpper());
    }
    return properties;
}

} // namespace simulator
