#include "DaemonInterface.h"

#include <libtactora/DBusArgument.h>
#include <limits>
#include <QDBusError>

namespace {

const QString objectPath = QStringLiteral("/");

// Connecting takes as long as ConnMan takes, and calls wait for each other.
constexpr int noTimeout = std::numeric_limits<int>::max();

const QStringList signalNames = {QStringLiteral("error"),
                                 QStringLiteral("powerChanged"),
                                 QStringLiteral("regionChanged"),
                                 QStringLiteral("networkRegistered"),
                                 QStringLiteral("networkForgot"),
                                 QStringLiteral("networkConnected"),
                                 QStringLiteral("networkDisconnected")};

QString problemText(const QDBusError &error)
{
    const QDBusError::ErrorType type = error.type();
    if (type == QDBusError::ServiceUnknown) {
        return QStringLiteral("The network daemon is not running.");
    }
    if (type == QDBusError::AccessDenied) {
        return QStringLiteral(
                   "You may not use the network daemon: only root and the members of the group %1 may.")
            .arg(QStringLiteral(NETWORK_GROUP));
    }
    if (type == QDBusError::NoReply || type == QDBusError::Disconnected) {
        return QStringLiteral("The network daemon has gone before it answered.");
    }
    if (type == QDBusError::UnknownMethod) {
        return QStringLiteral("This network daemon does not offer that.");
    }
    return QStringLiteral("The network daemon cannot be asked: %1 (%2)").arg(error.message(), error.name());
}

} // namespace

QString daemonName()
{
    return QStringLiteral("com.tactora.NetworkManager");
}

QDBusPendingCall callDaemon(const QDBusConnection &connection, const QString &method,
                            const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(daemonName(), objectPath, daemonName(), method);
    message.setArguments(arguments);
    return connection.asyncCall(message, noTimeout);
}

DaemonAnswer daemonAnswer(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage) {
        return {{}, problemText(QDBusError(reply))};
    }
    return {libtactora::dbusArgumentUnpack(reply.arguments().value(0)), {}};
}

DaemonSignals::DaemonSignals(const QDBusConnection &connection, QObject *parent)
    : QObject(parent)
{
    QDBusConnection bus = connection;
    for (const QString &name : signalNames) {
        bus.connect(daemonName(), objectPath, daemonName(), name, this, SLOT(relay(QDBusMessage)));
    }
}

void DaemonSignals::relay(const QDBusMessage &message)
{
    QVariantList arguments;
    for (const QVariant &argument : message.arguments()) {
        arguments << libtactora::dbusArgumentUnpack(argument);
    }
    emit received(message.member(), arguments);
}
