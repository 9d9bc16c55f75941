#pragma once

#include "ConnmanTypes.h"

#include <QDBusConnection>
#include <QList>
#include <QObject>

#include <functional>

class QDeadlineTimer;

/// What ConnMan announces unasked: which services have changed, come or gone, and that ConnMan itself has
/// gone. One receiver for both, so that they are told in the order in which they happened, also to somebody
/// who cannot wait for the event loop.
class ConnmanAnnouncements : public QObject
{
    Q_OBJECT

public:
    ConnmanAnnouncements(QDBusConnection connection, QObject *parent);

    /// Starts to receive; false when the connection is none.
    bool subscribe();

    /// Tells what has arrived by now; no other events.
    void deliver();
    /// The same, and then waits for what comes and tells it, until `isEnough`, asked after each look, or the
    /// deadline ends it.
    void await(const QDeadlineTimer &deadline, const std::function<bool()> &isEnough);

signals:
    void servicesChanged(const ConnmanServiceInfoList &changed, const QList<QDBusObjectPath> &removed);
    /// Its name has no owner any more, or another one: what it has told is void.
    void connmanGone();

private slots:
    void receiveServices(const ConnmanServiceInfoList &changed, const QList<QDBusObjectPath> &removed);
    void receiveOwner(const QString &name, const QString &oldOwner, const QString &newOwner);

private:
    QDBusConnection m_connection;
};
