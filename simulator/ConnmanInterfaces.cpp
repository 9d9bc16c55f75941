// What ConnMan's objects are on the bus: the one table of their interfaces, and the tree they stand in.

#include "Connman.h"
#include "ConnmanErrors.h"
#include "ConnmanInterface.h"
#include "ConnmanWire.h"

namespace simulator {

namespace {
const ConnmanInterface::Arguments nothing;
const ConnmanInterface::Arguments nameAndValue{{"name", "s"}, {"value", "v"}};
const ConnmanInterface::Arguments properties{{"properties", "a{sv}"}};
const ConnmanInterface::Arguments objectPath{{"path", "o"}};
const ConnmanInterface::Signal propertyChanged{"PropertyChanged", nameAndValue};
} // namespace

const ConnmanInterface Connman::managerInterface{
    connman::managerInterface,
    {{"GetProperties", nothing, properties, &Connman::getManagerProperties},
     {"GetTechnologies", nothing, {{"technologies", "a(oa{sv})"}}, &Connman::getTechnologies},
     {"GetServices", nothing, {{"services", "a(oa{sv})"}}, &Connman::getServices},
     {"GetPeers", nothing, {{"peers", "a(oa{sv})"}}, &Connman::getPeers},
     {"RegisterAgent", objectPath, nothing, &Connman::registerAgent},
     {"UnregisterAgent", objectPath, nothing, &Connman::unregisterAgent}},
    {propertyChanged,
     {"TechnologyAdded", {{"path", "o"}, {"properties", "a{sv}"}}},
     {"TechnologyRemoved", objectPath},
     {"ServicesChanged", {{"changed", "a(oa{sv})"}, {"removed", "ao"}}}}};

const ConnmanInterface Connman::technologyInterface{
    connman::technologyInterface,
    {{"GetProperties", nothing, properties, &Connman::getTechnologyProperties},
     {"SetProperty", nameAndValue, nothing, &Connman::setTechnologyProperty},
     {"Scan", nothing, nothing, &Connman::scan}},
    {propertyChanged}};

const ConnmanInterface Connman::serviceInterface{
    connman::serviceInterface,
    {{"GetProperties", nothing, properties, &Connman::getServiceProperties},
     {"SetProperty", nameAndValue, nothing, &Connman::setServiceProperty},
     {"Connect", nothing, nothing, &Connman::connectService},
     {"Disconnect", nothing, nothing, &Connman::disconnectService},
     {"Remove", nothing, nothing, &Connman::removeService}},
    {propertyChanged}};

const ConnmanInterface *Connman::interfaceAt(const QString &path) const
{
    if (path == connman::managerPath) {
        return &managerInterface;
    }
    if (m_technologies.findByPath(path) != nullptr) {
        return &technologyInterface;
    }
    return m_services.findByPath(path) != nullptr ? &serviceInterface : nullptr;
}

std::optional<QStringList> Connman::childrenOf(const QString &path) const
{
    if (path == connman::managerPath) {
        return QStringList{QStringLiteral("net")};
    }
    if (path == QLatin1String("/net")) {
        return QStringList{QStringLiteral("connman")};
    }
    if (path == QLatin1String("/net/connman")) {
        return QStringList{QStringLiteral("service"), QStringLiteral("technology")};
    }
    if (path + QLatin1Char('/') == connman::technologyPrefix) {
        return m_technologies.types();
    }
    if (path + QLatin1Char('/') == connman::servicePrefix) {
        return m_services.identifiers();
    }
    return std::nullopt;
}

QString Connman::introspect(const QString &path) const
{
    const ConnmanInterface *interface = interfaceAt(path);
    QString xml = interface != nullptr ? interface->xml() : QString();
    for (const QString &child : childrenOf(path).value_or(QStringList())) {
        xml += QStringLiteral("  <node name=\"%1\"/>\n").arg(child);
    }
    return xml;
}

void Connman::handleCall(const Call &call)
{
    applyProvisioning(); // a file that was written before the call was sent counts
    const ConnmanInterface *interface = interfaceAt(call.path());
    const ConnmanInterface::Method *method = interface != nullptr ? interface->find(call) : nullptr;
    if (method != nullptr) {
        (this->*method->answer)(call);
    } else {
        const bool isPlace = interface != nullptr || childrenOf(call.path());
        call.refuse(isPlace ? error::unknownMethod(call) : error::unknownObject(call));
    }
}

} // namespace simulator
