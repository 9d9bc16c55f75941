#pragma once

#include "ConnmanWire.h"
#include "Service.h"
#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <QVector>

namespace simulator {

class BusService;
struct Timings;

/// ConnMan's list of services, in its order, and what ConnMan tells the bus about it.
///
/// Like ConnMan it announces changes of the list some time after the first of them, all in one
/// ServicesChanged: every service in order, new ones with all their properties, the others with an empty
/// dictionary, and the paths that are gone. A service that has not been announced yet tells nothing of its
/// property changes.
class ServiceList : public QObject
{
    Q_OBJECT
public:
    ServiceList(const BusService &bus, const Timings &timings, QObject *parent = nullptr);

    /// Takes its place in ConnMan's order.
    ServicePtr add(const QString &identifier, const QVariantMap &properties);
    void remove(const ServicePtr &service);

    /// Null when there is none.
    ServicePtr find(const QString &identifier) const { return m_byIdentifier.value(identifier); }
    ServicePtr findByPath(const QString &path) const;
    const QVector<ServicePtr> &all() const { return m_services; }
    ObjectRecordList records() const;
    QStringList identifiers() const;

    /// Sets a property and tells the bus, unless it had that value already.
    void change(Service &service, const QString &property, const QVariant &value);
    /// Sets a property and tells the bus in any case.
    void set(Service &service, const QString &property, const QVariant &value);
    /// Tells the bus of a property as it stands, or as `value` where ConnMan says something else than it
    /// keeps.
    void tell(const Service &service, const QString &property, const QVariant &value) const;

    /// Puts the services into ConnMan's order and announces it.
    void sort();
    void scheduleAnnouncement();
    /// Announces what is scheduled at once.
    void announceNow();
    /// As a ConnMan that has just started: all services are new, none has gone.
    void announceAllAsNew();
    /// As a ConnMan that is about to end: they are all gone. The list stays as it is.
    void announceAllAsGone();

private:
    void announce();
    void emitServicesChanged(const ObjectRecordList &changed, const ObjectPathList &removed) const;

    const BusService &m_bus;
    const Timings &m_timings;
    QVector<ServicePtr> m_services;
    QHash<QString, ServicePtr> m_byIdentifier;
    QSet<QString> m_added; // identifiers
    QStringList m_removed; // identifiers, in the order of their going
    QTimer m_announcement;
};

} // namespace simulator
