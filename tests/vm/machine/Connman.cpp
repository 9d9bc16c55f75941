#include "Connman.h"

#include "BusCall.h"
#include "EventWait.h"
#include "PlainValue.h"
#include "Text.h"

#include <QDBusMessage>
#include <QDBusVariant>

using test_support::eventually;
using test_support::plain;

namespace {

const QString connmanName = "net.connman"_s;
const QString servicePath = "/net/connman/service/"_s;
const QString serviceInterface = "net.connman.Service"_s;
const QString wifiPath = "/net/connman/technology/wifi"_s;
const QString technologyInterface = "net.connman.Technology"_s;

QDBusMessage ask(const QString &path, const QString &interface, const QString &method,
                 const QVariantList &arguments = {})
{
    return callOnBus(connmanName, path, interface, method, arguments);
}

QVariantMap propertiesOf(const QString &path, const QString &interface)
{
    const QDBusMessage reply = ask(path, interface, "GetProperties"_s);
    return plain(reply.arguments().value(0)).toMap();
}

} // namespace

bool Connman::startAndWait()
{
    return m_program->start() &&
           eventually([] { return !propertiesOf(wifiPath, technologyInterface).isEmpty(); });
}

bool Connman::stopAndWait()
{
    return m_program->stop() && eventually([] { return !isOnBus(connmanName); });
}

QMap<QString, QVariantMap> Connman::services() const
{
    const QDBusMessage reply = ask("/"_s, "net.connman.Manager"_s, "GetServices"_s);
    QMap<QString, QVariantMap> services;
    const QVariantList entries = plain(reply.arguments().value(0)).toList();
    for (const QVariant &entry : entries) {
        const QVariantList pathAndProperties = entry.toList();
        services.insert(pathAndProperties.value(0).toString().section(QLatin1Char('/'), -1),
                        pathAndProperties.value(1).toMap());
    }
    return services;
}

QVariantMap Connman::service(const QString &identifier) const
{
    return propertiesOf(servicePath + identifier, serviceInterface);
}

QString Connman::state(const QString &identifier) const
{
    return service(identifier).value("State"_s).toString();
}

QString Connman::ipv4(const QString &identifier, const QString &key) const
{
    return service(identifier).value("IPv4"_s).toMap().value(key).toString();
}

bool Connman::isFavorite(const QString &identifier) const
{
    return service(identifier).value("Favorite"_s).toBool();
}

QStringList Connman::favorites() const
{
    QStringList favorites;
    const auto all = services();
    for (auto service = all.begin(); service != all.end(); ++service) {
        if (service->value("Favorite"_s).toBool() && service->value("Type"_s) == "wifi"_s) {
            favorites.append(service.key());
        }
    }
    return favorites;
}

QString Connman::find(const QString &name, const QString &security) const
{
    QString found;
    eventually([&] {
        const auto all = services();
        for (auto service = all.begin(); service != all.end(); ++service) {
            if (service->value("Name"_s).toString() == name && service.key().endsWith(security)) {
                found = service.key();
            }
        }
        return !found.isEmpty();
    });
    return found;
}

bool Connman::isListed(const QString &identifier) const
{
    return services().contains(identifier);
}

bool Connman::isWifiPowered() const
{
    return propertiesOf(wifiPath, technologyInterface).value("Powered"_s).toBool();
}

bool Connman::setWifiPowered(bool on) const
{
    const QVariantList powered{"Powered"_s, QVariant::fromValue(QDBusVariant(on))};
    return eventually([&] {
        if (isWifiPowered() != on) {
            // Asked again: it refuses while it is still at an older request.
            ask(wifiPath, technologyInterface, "SetProperty"_s, powered);
        }
        return isWifiPowered() == on;
    });
}

bool Connman::setProperty(const QString &identifier, const QString &name, const QVariant &value) const
{
    const QDBusMessage reply = ask(servicePath + identifier, serviceInterface, "SetProperty"_s,
                                   {name, QVariant::fromValue(QDBusVariant(value))});
    return reply.type() == QDBusMessage::ReplyMessage;
}
