#include "DBusService.h"

#include <QDBusConnection>
#include <QDBusMessage>
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
    // Not with a watcher: one that is made after the answer has come tells of it later than of what came
    // after.
    connection.callWithCallback(message, this, SLOT(hasOwner()), SLOT(hasNoOwner()));
}

void DBusService::hasOwner()
{
    if (!m_isOwnerKnown) {
        m_isOwnerKnown = true;
        emit connected();
    }
}

void DBusService::hasNoOwner()
{
    m_isOwnerKnown = true;
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
