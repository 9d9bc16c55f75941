#include "Connman.h"
#include "ConnmanErrors.h"
#include "ConnmanWire.h"

#include <optional>
#include <QDBusVariant>
#include <QHash>

namespace simulator {

namespace {
QString calledKey(const Call &call)
{
    return call.member() + QLatin1Char('(') + call.signature() + QLatin1Char(')');
}

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

void Connman::handleTechnologyCall(const Call &call, const TechnologyPtr &technology)
{
    static const QHash<QString, void (Connman::*)(const Call &, const TechnologyPtr &)> methods{
        {QStringLiteral("GetProperties()"), &Connman::getTechnologyProperties},
        {QStringLiteral("SetProperty(sv)"), &Connman::setTechnologyProperty},
        {QStringLiteral("Scan()"), &Connman::scan},
    };
    const auto method = methods.constFind(calledKey(call));
    if (call.interface() != connman::technologyInterface || method == methods.cend()) {
        call.refuse(error::unknownMethod(call));
    } else {
        (this->**method)(call, technology);
    }
}

void Connman::handleServiceCall(const Call &call, const ServicePtr &service)
{
    static const QHash<QString, void (Connman::*)(const Call &, const ServicePtr &)> methods{
        {QStringLiteral("GetProperties()"), &Connman::getServiceProperties},
        {QStringLiteral("SetProperty(sv)"), &Connman::setServiceProperty},
        {QStringLiteral("Connect()"), &Connman::connectService},
        {QStringLiteral("Disconnect()"), &Connman::disconnectService},
        {QStringLiteral("Remove()"), &Connman::removeService},
    };
    const auto method = methods.constFind(calledKey(call));
    if (call.interface() != connman::serviceInterface || method == methods.cend()) {
        call.refuse(error::unknownMethod(call));
    } else {
        (this->**method)(call, service);
    }
}

void Connman::getTechnologyProperties(const Call &call, const TechnologyPtr &technology)
{
    call.reply({QVariant::fromValue(technologyDict(technology->properties))});
}

void Connman::setTechnologyProperty(const Call &call, const TechnologyPtr &technology)
{
    const QString property = call.arguments().at(0).toString();
    if (property != QLatin1String("Powered")) {
        call.refuse(error::invalidProperty());
    } else if (variantArgument(call).userType() != QMetaType::Bool) {
        call.refuse(error::invalidArguments());
    } else {
        m_radio.setPowered(technology, variantArgument(call).toBool(), call);
    }
}

void Connman::scan(const Call &call, const TechnologyPtr &technology)
{
    m_radio.scan(technology, call);
}

void Connman::getServiceProperties(const Call &call, const ServicePtr &service)
{
    call.reply({QVariant::fromValue(serviceDict(service->properties))});
}

void Connman::setServiceProperty(const Call &call, const ServicePtr &service)
{
    answer(call, m_settings.set(service, call.arguments().at(0).toString(), variantArgument(call)));
}

void Connman::connectService(const Call &call, const ServicePtr &service)
{
    m_connector.connectService(service, call);
}

void Connman::disconnectService(const Call &call, const ServicePtr &service)
{
    service->ignored = true;
    answer(call, m_connector.disconnectService(service));
}

void Connman::removeService(const Call &call, const ServicePtr &service)
{
    answer(call, m_connector.removeService(service));
}

} // namespace simulator
