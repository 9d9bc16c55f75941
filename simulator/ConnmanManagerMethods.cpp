#include "Connman.h"
#include "ConnmanErrors.h"
#include "ConnmanWire.h"

#include <QHash>

namespace simulator {

namespace {
QString methodKey(const QString &interface, const char *method)
{
    return interface + QLatin1Char('.') + QLatin1String(method);
}

QString calledKey(const Call &call)
{
    return call.interface() + QLatin1Char('.') + call.member() + QLatin1Char('(') + call.signature() +
           QLatin1Char(')');
}

} // namespace

void Connman::handleManagerCall(const Call &call)
{
    using connman::managerInterface;
    static const QHash<QString, void (Connman::*)(const Call &)> methods{
        {methodKey(managerInterface, "GetProperties()"), &Connman::getManagerProperties},
        {methodKey(managerInterface, "GetTechnologies()"), &Connman::getTechnologies},
        {methodKey(managerInterface, "GetServices()"), &Connman::getServices},
        {methodKey(managerInterface, "GetPeers()"), &Connman::getPeers},
        {methodKey(managerInterface, "RegisterAgent(o)"), &Connman::registerAgent},
        {methodKey(managerInterface, "UnregisterAgent(o)"), &Connman::unregisterAgent},
    };
    const auto method = methods.constFind(calledKey(call));
    if (method == methods.cend()) {
        call.refuse(error::unknownMethod(call));
    } else {
        (this->**method)(call);
    }
}

void Connman::getManagerProperties(const Call &call)
{
    call.reply({QVariant::fromValue(managerDict(m_state.properties()))});
}

void Connman::getTechnologies(const Call &call)
{
    call.reply({QVariant::fromValue(m_technologies.records())});
}

void Connman::getServices(const Call &call)
{
    call.reply({QVariant::fromValue(m_services.records())});
}

void Connman::getPeers(const Call &call)
{
    call.reply({QVariant::fromValue(ObjectRecordList())});
}

void Connman::registerAgent(const Call &call)
{
    const QString path = call.arguments().constFirst().value<QDBusObjectPath>().path();
    if (m_agents.add(call.sender(), path)) {
        call.reply();
    } else {
        call.refuse(error::alreadyExists());
    }
}

void Connman::unregisterAgent(const Call &call)
{
    if (m_agents.remove(call.sender())) {
        call.reply();
    } else {
        call.refuse(error::notRegistered());
    }
}

} // namespace simulator
