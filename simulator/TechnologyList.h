#pragma once

#include "ConnmanWire.h"
#include <map>
#include <memory>
#include <QString>
#include <QVariantMap>

namespace simulator {

class BusService;

/// One of ConnMan's technologies: "ethernet", "wifi".
struct Technology
{
    QString type;
    /// As the bus sees them; see Service::properties.
    QVariantMap properties;

    QString path() const { return connman::technologyPrefix + type; }
    bool isPowered() const { return properties.value(QStringLiteral("Powered")).toBool(); }
    bool isConnected() const { return properties.value(QStringLiteral("Connected")).toBool(); }
};
using TechnologyPtr = std::shared_ptr<Technology>;

/// The properties ConnMan 1.41 gives a new technology: switched off, not connected.
QVariantMap newTechnologyProperties(const QString &type);

/// ConnMan's technologies and what ConnMan tells the bus about them.
class TechnologyList
{
public:
    explicit TechnologyList(const BusService &bus)
        : m_bus(bus)
    {
    }

    TechnologyPtr add(const QString &type, const QVariantMap &properties);
    void remove(const QString &type);
    /// As a ConnMan that has just started.
    void announceAll() const;
    /// As a ConnMan that is about to end: switched off and gone, Wi-Fi first. The list stays as it is.
    void announceAllAsGone() const;

    /// Null when there is none.
    TechnologyPtr find(const QString &type) const;
    TechnologyPtr findByPath(const QString &path) const;
    bool isPowered(const QString &type) const;
    ObjectRecordList records() const;
    QStringList types() const;

    /// Sets a property and tells the bus.
    void set(Technology &technology, const QString &property, const QVariant &value) const;

private:
    void announce(const Technology &technology) const;
    void announceRemoval(const Technology &technology) const;

    const BusService &m_bus;
    std::map<QString, TechnologyPtr> m_technologies;
};

} // namespace simulator
