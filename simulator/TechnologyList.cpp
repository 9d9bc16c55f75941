#include "TechnologyList.h"

#include "BusService.h"
#include <QDBusVariant>

namespace simulator {

QVariantMap newTechnologyProperties(const QString &type)
{
    const QString name = type == QLatin1String("ethernet") ? QStringLiteral("Wired")
                         : type == QLatin1String("wifi")   ? QStringLiteral("WiFi")
                                                           : type;
    const int frequency = type == QLatin1String("wifi") ? 2412 : 0;
    return {{QStringLiteral("Name"), name},       {QStringLiteral("Type"), type},
            {QStringLiteral("Powered"), false},   {QStringLiteral("Connected"), false},
            {QStringLiteral("Tethering"), false}, {QStringLiteral("TetheringFreq"), frequency}};
}

TechnologyPtr TechnologyList::add(const QString &type, const QVariantMap &properties)
{
    auto technology = std::make_shared<Technology>(Technology{type, properties});
    m_technologies[type] = technology;
    announce(*technology);
    return technology;
}

void TechnologyList::remove(const QString &type)
{
    const TechnologyPtr technology = find(type);
    m_technologies.erase(type);
    announceRemoval(*technology);
}

void TechnologyList::announceAllAsGone() const
{
    for (auto each = m_technologies.crbegin(); each != m_technologies.crend(); ++each) {
        Technology &technology = *each->second;
        if (technology.isPowered()) {
            set(technology, QStringLiteral("Powered"), false);
        }
        announceRemoval(technology);
    }
}

void TechnologyList::announceRemoval(const Technology &technology) const
{
    m_bus.emitSignal(connman::managerPath, connman::managerInterface, QStringLiteral("TechnologyRemoved"),
                     {QVariant::fromValue(QDBusObjectPath(technology.path()))});
}

void TechnologyList::announceAll() const
{
    for (const auto &[type, technology] : m_technologies) {
        announce(*technology);
    }
}

void TechnologyList::announce(const Technology &technology) const
{
    m_bus.emitSignal(connman::managerPath, connman::managerInterface, QStringLiteral("TechnologyAdded"),
                     {QVariant::fromValue(QDBusObjectPath(technology.path())),
                      QVariant::fromValue(technologyDict(technology.properties))});
}

TechnologyPtr TechnologyList::find(const QString &type) const
{
    const auto found = m_technologies.find(type);
    return found == m_technologies.end() ? nullptr : found->second;
}

TechnologyPtr TechnologyList::findByPath(const QString &path) const
{
    return path.startsWith(connman::technologyPrefix) ? find(path.mid(connman::technologyPrefix.size()))
                                                      : nullptr;
}

bool TechnologyList::isPowered(const QString &type) const
{
    const TechnologyPtr technology = find(type);
    return technology != nullptr && technology->isPowered();
}

ObjectRecordList TechnologyList::records() const
{
    ObjectRecordList records;
    for (const auto &[type, technology] : m_technologies) {
        records.append({QDBusObjectPath(technology->path()), technologyDict(technology->properties)});
    }
    return records;
}

QStringList TechnologyList::types() const
{
    QStringList types;
    for (const auto &[type, technology] : m_technologies) {
        types.append(type);
    }
    return types;
}

void TechnologyList::set(Technology &technology, const QString &property, const QVariant &value) const
{
    technology.properties.insert(property, value);
    m_bus.emitSignal(technology.path(), connman::technologyInterface, QStringLiteral("PropertyChanged"),
                     {property, QVariant::fromValue(QDBusVariant(value))});
}

} // namespace simulator
