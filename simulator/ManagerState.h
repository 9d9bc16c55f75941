#pragma once

#include <QString>
#include <QVariantMap>

namespace simulator {

class BusService;
class ServiceList;
class TechnologyList;

/// What follows from the states of all services: the technologies' "Connected" and the manager's "State".
/// Keeps the manager's other properties too.
class ManagerState
{
public:
    ManagerState(const BusService &bus, const ServiceList &services, const TechnologyList &technologies);

    QVariantMap properties() const { return m_properties; }
    /// Works out what follows and tells the bus of what is new.
    void update();

private:
    QString overallState() const;
    void updateTechnologies() const;
    void change(const QString &property, const QVariant &value);

    const BusService &m_bus;
    const ServiceList &m_services;
    const TechnologyList &m_technologies;
    QVariantMap m_properties;
};

} // namespace simulator
