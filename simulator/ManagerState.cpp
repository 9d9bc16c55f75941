#include "ManagerState.h"

#include "BusService.h"
#include "ServiceList.h"
#include "TechnologyList.h"
#include <algorithm>
#include <QDBusVariant>

namespace simulator {

namespace {
const QString state = QStringLiteral("State");
} // namespace

ManagerState::ManagerState(const BusService &bus, const ServiceList &services,
                           const TechnologyList &technologies)
    : m_bus(bus)
    , m_services(services)
    , m_technologies(technologies)
    , m_properties({{state, QStringLiteral("idle")},
                    {QStringLiteral("OfflineMode"), false},
                    {QStringLiteral("SessionMode"), false}})
{
}

void ManagerState::update()
{
    updateTechnologies();
    change(state, overallState());
}

QString ManagerState::overallState() const
{
    const QVector<ServicePtr> &services = m_services.all();
    const auto isIn = [](const char *wanted) {
        return [wanted](const ServicePtr &service) { return service->state() == QLatin1String(wanted); };
    };
    if (std::any_of(services.cbegin(), services.cend(), isIn("online"))) {
        return QStringLiteral("online");
    }
    if (std::any_of(services.cbegin(), services.cend(), isIn("ready"))) {
        return QStringLiteral("ready");
    }
    return QStringLiteral("idle");
}

void ManagerState::updateTechnologies() const
{
    const QVector<ServicePtr> &services = m_services.all();
    for (const QString &type : m_technologies.types()) {
        const bool connected =
            std::any_of(services.cbegin(), services.cend(), [&type](const ServicePtr &service) {
                return service->type() == type && service->isConnected();
            });
        const TechnologyPtr technology = m_technologies.find(type);
        if (technology->isConnected() != connected) {
            m_technologies.set(*technology, QStringLiteral("Connected"), connected);
        }
    }
}

void ManagerState::change(const QString &property, const QVariant &value)
{
    if (m_properties.value(property) != value) {
        m_properties.insert(property, value);
        m_bus.emitSignal(connman::managerPath, connman::managerInterface, QStringLiteral("PropertyChanged"),
                         {property, QVariant::fromValue(QDBusVariant(value))});
    }
}

} // namespace simulator
