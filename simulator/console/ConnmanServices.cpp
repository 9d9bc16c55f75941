#include "ConnmanServices.h"

#include "ConnmanTypes.h"
#include <libtactora/DBusArgument.h>
#include <QDBusMessage>
#include <QDBusReply>

QVariantMap connmanServices(const QDBusConnection &bus)
{
    registerConnmanTypes();
    const QDBusMessage call =
        QDBusMessage::createMethodCall(QStringLiteral("net.connman"), QStringLiteral("/"),
                                       QStringLiteral("net.connman.Manager"), QStringLiteral("GetServices"));
    const QDBusReply<ConnmanServiceInfoList> reply = bus.call(call);
    QVariantMap services;
    const ConnmanServiceInfoList infos = reply.value();
    for (const ConnmanServiceInfo &info : infos) {
        services.insert(info.path.path().section(QLatin1Char('/'), -1),
                        libtactora::dbusArgumentUnpack(info.properties));
    }
    return services;
}
