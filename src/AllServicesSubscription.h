#pragma once

#include <QObject>

class QDBusConnection;

/// Makes the bus deliver the "PropertyChanged" of every ConnMan service, by one match rule.
///
/// Each ConnmanService subscribes for its own path too, but the bus allows a connection only so many rules
/// (512 by default), and Qt does not see when it refuses one: the signals of every further service would be
/// lost without a word. What this one rule lets through, Qt hands to the per-path subscriptions by itself.
/// Make it before the first service.
class AllServicesSubscription : public QObject
{
    Q_OBJECT

public:
    AllServicesSubscription(QDBusConnection connection, QObject *parent);

private slots:
    /// A subscription needs a receiver; the services themselves do the work.
    void ignore() {}
};
