#pragma once

#include <QObject>
#include <QString>

class QDBusConnection;

namespace libtactora {

/// Watches one name on a bus. It never blocks and never starts the service; on a connection that is not
/// connected it stays silent. Signals are emitted from the event loop only.
class DBusService : public QObject
{
    Q_OBJECT

public:
    DBusService(const QDBusConnection &connection, const QString &name, QObject *parent = nullptr);

signals:
    /// The name has an owner: once when it had one already at construction, and once for each time it gets
    /// one later, also when it passes straight from one process to another.
    void connected();
    /// The name's owner has gone and nobody has taken its place.
    void disconnected();

private slots:
    void hasOwner();
    void hasNoOwner();

private:
    void queryOwner(const QDBusConnection &connection, const QString &name);
    void ownerChanged(const QString &oldOwner, const QString &newOwner);

    bool m_isOwnerKnown = false;
};

} // namespace libtactora
