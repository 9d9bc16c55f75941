#include "BusCall.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>

QDBusMessage callOnBus(const QString &service, const QString &path, const QString &interface,
                       const QString &method, const QVariantList &arguments, int timeoutMs)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    const QDBusPendingCallWatcher pending(QDBusConnection::systemBus().asyncCall(call, timeoutMs));
    if (!pending.isFinished()) {
        QEventLoop loop;
        QObject::connect(&pending, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return pending.reply();
}

bool isOnBus(const QString &name)
{
    return QDBusConnection::systemBus().interface()->isServiceRegistered(name);
}
