#include "BareClient.h"

#include "ConnmanNames.h"
#include "ConnmanTypes.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusReply>

namespace {

QDBusMessage call(const QString &path, const QString &interface, const QString &method)
{
    return QDBusConnection::systemBus().call(
        QDBusMessage::createMethodCall(ConnmanNames::Service, path, interface, method));
}

/// A dictionary arrives as a raw argument.
QVariant unpacked(const QVariant &value)
{
    if (value.userType() == qMetaTypeId<QDBusArgument>() &&
        value.value<QDBusArgument>().currentSignature() == QLatin1String("a{sv}")) {
        return qdbus_cast<QVariantMap>(value);
    }
    return value;
}

} // namespace

BareClient::BareClient()
{
    QDBusConnection::systemBus().connect(ConnmanNames::Service, QString(), ConnmanNames::ServiceInterface,
                                         QStringLiteral("PropertyChanged"), this,
                                         SLOT(propertyChanged(QString, QDBusVariant, QDBusMessage)));
}

void BareClient::mirror()
{
    const QDBusReply<ConnmanServiceInfoList> reply =
        call(ConnmanNames::ManagerObject, ConnmanNames::ManagerInterface, QStringLiteral("GetServices"));
    const ConnmanServiceInfoList listed = reply.value();
    for (const ConnmanServiceInfo &info : listed) {
        readProperties(info.path.path());
    }
}

void BareClient::readProperties(const QString &path)
{
    const QDBusReply<QVariantMap> reply =
        call(path, ConnmanNames::ServiceInterface, QStringLiteral("GetProperties"));
    QVariantMap properties;
    const QVariantMap received = reply.value();
    for (auto property = received.cbegin(); property != received.cend(); ++property) {
        properties.insert(property.key(), unpacked(property.value()));
    }
    m_services.insert(path, properties);
}

void BareClient::propertyChanged(const QString &name, const QDBusVariant &value, const QDBusMessage &message)
{
    m_services[message.path()].insert(name, unpacked(value.variant()));
    if (name == QLatin1String("State")) {
        readProperties(message.path());
    }
}
