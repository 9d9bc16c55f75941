#pragma once

#include "Service.h"
#include <QHash>

namespace simulator {

class ServiceList;
struct AccessPoint;

/// Makes services of what is around the device, and gives those that were connected before what ConnMan keeps
/// of them on disk.
class Discovery
{
public:
    explicit Discovery(ServiceList &services);

    /// The Wi-Fi card's address as ConnMan has read it at its start; the identifiers have it in them.
    QString cardAddress() const { return m_cardAddress; }
    void setCardAddress(const QString &address) { m_cardAddress = address; }

    /// The service of an access point in a scan (a hidden one has no name then).
    ServicePtr scanned(const AccessPoint &accessPoint);
    /// The service of an access point whose name is known.
    ServicePtr named(const AccessPoint &accessPoint);
    ServicePtr cable();
    /// Takes a service out of the list; what ConnMan keeps of it stays.
    void remove(const ServicePtr &service);
    /// Forgets what is kept on disk.
    void erase() { m_kept.clear(); }

private:
    struct Kept;

    ServicePtr service(const QString &identifier, const QVariantMap &properties, const QString &ssid);
    void keep(const Service &service);
    void restore(Service &service) const;

    ServiceList &m_services;
    QString m_cardAddress = QStringLiteral("02:00:00:00:02:00");
    QHash<QString, std::shared_ptr<Kept>> m_kept; // by identifier
};

} // namespace simulator
