#include "ServiceList.h"

#include "BusService.h"
#include "Timings.h"
#include <algorithm>
#include <QDBusVariant>

namespace simulator {

namespace {
int typeRank(const Service &service)
{
    static const QStringList order{QStringLiteral("ethernet"), QStringLiteral("wifi")};
    const int index = order.indexOf(service.type());
    return index < 0 ? order.size() : index;
}

// Connected ones first (online before ready), then connecting ones.
int stateRank(const Service &service)
{
    if (service.state() == QLatin1String("online")) {
        return 0;
    }
    if (service.isConnected()) {
        return 1;
    }
    return service.isConnecting() ? 2 : 3;
}

bool comesBefore(const ServicePtr &a, const ServicePtr &b)
{
    if (stateRank(*a) != stateRank(*b)) {
        return stateRank(*a) < stateRank(*b);
    }
    if (a->isFavorite() != b->isFavorite()) {
        return a->isFavorite();
    }
    if (typeRank(*a) != typeRank(*b)) {
        return typeRank(*a) < typeRank(*b);
    }
    if (a->strength() != b->strength()) {
        return a->strength() > b->strength();
    }
    return a->name() < b->name();
}
} // namespace

ServiceList::ServiceList(const BusService &bus, const Timings &timings, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_timings(timings)
{
    m_announcement.setSingleShot(true);
    connect(&m_announcement, &QTimer::timeout, this, &ServiceList::announce);
}

ServicePtr ServiceList::add(const QString &identifier, const QVariantMap &properties)
{
    auto service = std::make_shared<Service>(identifier);
    service->properties = properties;
    m_services.insert(std::upper_bound(m_services.begin(), m_services.end(), service, comesBefore), service);
    m_byIdentifier.insert(identifier, service);
    m_added.insert(identifier);
    m_removed.removeAll(identifier);
    scheduleAnnouncement();
    return service;
}

void ServiceList::remove(const ServicePtr &service)
{
    m_services.removeAll(service);
    m_byIdentifier.remove(service->identifier);
    m_added.remove(service->identifier);
    m_removed.append(service->identifier);
    scheduleAnnouncement();
}

ServicePtr ServiceList::findByPath(const QString &path) const
{
    return path.startsWith(connman::servicePrefix) ? find(path.mid(connman::servicePrefix.size())) : nullptr;
}

ObjectRecordList ServiceList::records() const
{
    ObjectRecordList records;
    records.reserve(m_services.size());
    for (const ServicePtr &service : m_services) {
        records.append({QDBusObjectPath(service->path()), serviceDict(service->properties)});
    }
    return records;
}

QStringList ServiceList::identifiers() const
{
    QStringList identifiers;
    for (const ServicePtr &service : m_services) {
        identifiers.append(service->identifier);
    }
    return identifiers;
}

void ServiceList::change(Service &service, const QString &property, const QVariant &value)
{
    if (service.properties.value(property) != value) {
        set(service, property, value);
    }
}

void ServiceList::set(Service &service, const QString &property, const QVariant &value)
{
    service.properties.insert(property, value);
    tell(service, property, value);
}

void ServiceList::tell(const Service &service, const QString &property, const QVariant &value) const
{
    if (!m_added.contains(service.identifier)) {
        m_bus.emitSignal(service.path(), connman::serviceInterface, QStringLiteral("PropertyChanged"),
                         {property, QVariant::fromValue(QDBusVariant(value))});
    }
}

void ServiceList::sort()
{
    if (m_services.size() < 2) {
        return; // ConnMan has nothing to sort then, and tells nobody
    }
    std::stable_sort(m_services.begin(), m_services.end(), comesBefore);
    scheduleAnnouncement();
}

void ServiceList::scheduleAnnouncement()
{
    if (!m_announcement.isActive()) {
        m_announcement.start(m_timings.announce);
    }
}

void ServiceList::announceNow()
{
    if (m_announcement.isActive()) {
        m_announcement.stop();
        announce();
    }
}

void ServiceList::announceAllAsNew()
{
    m_removed.clear();
    for (const ServicePtr &service : qAsConst(m_services)) {
        m_added.insert(service->identifier);
    }
    if (!m_services.isEmpty()) {
        scheduleAnnouncement();
    }
}

void ServiceList::announceAllAsGone()
{
    m_announcement.stop();
    ObjectPathList gone;
    for (const ServicePtr &service : qAsConst(m_services)) {
        gone.append(QDBusObjectPath(service->path()));
    }
    emitServicesChanged({}, gone);
}

void ServiceList::emitServicesChanged(const ObjectRecordList &changed, const ObjectPathList &removed) const
{
    m_bus.emitSignal(connman::managerPath, connman::managerInterface, QStringLiteral("ServicesChanged"),
                     {QVariant::fromValue(changed), QVariant::fromValue(removed)});
}

void ServiceList::announce()
{
    ObjectRecordList changed;
    changed.reserve(m_services.size());
    for (const ServicePtr &service : m_services) {
        const bool isNew = m_added.contains(service->identifier);
        changed.append(
            {QDBusObjectPath(service->path()), isNew ? serviceDict(service->properties) : PropertyDict()});
    }
    ObjectPathList removed;
    for (const QString &identifier : qAsConst(m_removed)) {
        removed.append(QDBusObjectPath(connman::servicePrefix + identifier));
    }
    m_added.clear();
    m_removed.clear();
    emitServicesChanged(changed, removed);
}

} // namespace simulator
