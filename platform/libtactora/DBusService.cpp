#include "DBusService.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

namespace libtactora {

// The bus handles what it is sent in order: the match rule of the watcher is in place before the query is
// answered, so every change after that answer is told. A change may even be told before the answer is looked
// at; being newer, it then stands for the answer too (see ownerChanged).
DBusService::DBusService(const QDBusConnection &connection, const QString &name, QObject *parent)
    : QObject(parent)
{
    if (!connection.isConnected()) {
        return;
    }
    auto *watcher = new QDBusServiceWatcher(name, connection, QDBusServiceWatcher::WatchForOwnerChange, this);
    QObject::connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                     [this](const QString & /*name*/, const QString &oldOwner, const QString &newOwner) {
                         ownerChanged(oldOwner, newOwner);
                     });
    queryOwner(connection, name);
}

void DBusService::queryOwner(const QDBusConnection &connection, const QString &name)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetNameOwner"));
    message << name;
    auto *query = new QDBusPendingCallWatcher(connection.asyncCall(message), this);
    QObject::connect(query, &QDBusPendingCallWatcher::finished, this, &DBusService::ownerQueryFinished);
}

void DBusService::ownerQueryFinished(QDBusPendingCallWatcher *query)
{
    query->deleteLater();
    if (m_isOwnerKnown) {
        return;
    }
    m_isOwnerKnown = true;
    if (!query->isError()) { // without an owner the bus answers with an error
        emit connected();
    }
}

void DBusService::ownerChanged(const QString &oldOwner, const QString &newOwner)
{
    const bool hadOwnerFromTheStart = !m_isOwnerKnown && !oldOwner.isEmpty();
    m_isOwnerKnown = true;
    if (hadOwnerFromTheStart) {
        emit connected();
    }
    if (newOwner.isEmpty()) {
        emit disconnected();
    } else {
        emit connected();
    }
}

} // namespace libtactora
