// What answers the calls of the table in ConnmanInterfaces.cpp.

#include "Connman.h"
#include "ConnmanErrors.h"
#include "ConnmanWire.h"

#include <QDBusVariant>

namespace simulator {

namespace {
QVariant variantArgument(const Call &call)
{
    return call.arguments().at(1).value<QDBusVariant>().variant();
}

void answer(const Call &call, const std::optional<ErrorReply> &refusal)
{
    if (refusal) {
        call.refuse(*refusal);
    } else {
        call.reply();
    }
}
} // namespace

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
        call.refuse(error::alreadyExists);
    }
}

void Connman::unregisterAgent(const Call &call)
{
    if (m_agents.remove(call.sender())) {
        call.reply();
    } else {
        call.refuse(error::notRegistered);
    }
}

void Connman::getTechnologyProperties(const Call &call)
{
    call.reply({QVariant::fromValue(technologyDict(technologyOf(call)->properties))});
}

void Connman::setTechnologyProperty(const Call &call)
{
    const QString property = call.arguments().at(0).toString();
    if (property != QLatin1String("Powered")) {
        call.refuse(error::invalidProperty);
    } else if (variantArgument(call).userType() != QMetaType::Bool) {
        call.refuse(error::invalidArguments);
    } else {
        m_radio.setPowered(technologyOf(call), variantArgument(call).toBool(), call);
    }
}

void Connman::scan(const Call &call)
{
    m_radio.scan(technologyOf(call), call);
}

void Connman::getServiceProperties(const Call &call)
{
    call.reply({QVariant::fromValue(serviceDict(serviceOf(call)->properties))});
}

void Connman::setServiceProperty(const Call &call)
{
    answer(call, m_settings.set(serviceOf(call), call.arguments().at(0).toString(), variantArgument(call)));
}

void Connman::connectService(const Call &call)
{
    m_connector.connectService(serviceOf(call), call);
}

void Connman::disconnectService(const Call &call)
{
    const ServicePtr service = serviceOf(call);
    service->ignored = true;
    answer(call, m_connector.disconnectService(service));
}

void Connman::removeService(const Call &call)
{
    answer(call, m_connector.removeService(serviceOf(call)));
}

} // namespace simulator
