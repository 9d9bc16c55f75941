#include "Connman.h"
#include "ConnmanErrors.h"
#include "ConnmanWire.h"

#include <QDateTime>
#include <QDBusVariant>
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

QString counterKey(const Call &call)
{
    return call.sender() + call.arguments().constFirst().value<QDBusObjectPath>().path();
}
} // namespace

void Connman::handleManagerCall(const Call &call)
{
    using connman::clockInterface;
    using connman::managerInterface;
    static const QHash<QString, void (Connman::*)(const Call &)> methods{
        {methodKey(managerInterface, "GetProperties()"), &Connman::getManagerProperties},
        {methodKey(managerInterface, "SetProperty(sv)"), &Connman::setManagerProperty},
        {methodKey(managerInterface, "GetTechnologies()"), &Connman::getTechnologies},
        {methodKey(managerInterface, "GetServices()"), &Connman::getServices},
        {methodKey(managerInterface, "GetPeers()"), &Connman::getPeers},
        {methodKey(managerInterface, "GetTetheringClients()"), &Connman::getTetheringClients},
        {methodKey(managerInterface, "RegisterAgent(o)"), &Connman::registerAgent},
        {methodKey(managerInterface, "UnregisterAgent(o)"), &Connman::unregisterAgent},
        {methodKey(managerInterface, "RegisterCounter(ouu)"), &Connman::registerCounter},
        {methodKey(managerInterface, "UnregisterCounter(o)"), &Connman::unregisterCounter},
        {methodKey(clockInterface, "GetProperties()"), &Connman::getClockProperties},
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

void Connman::setManagerProperty(const Call &call)
{
    const QString property = call.arguments().at(0).toString();
    const QVariant value = call.arguments().at(1).value<QDBusVariant>().variant();
    if (property != QLatin1String("OfflineMode") && property != QLatin1String("SessionMode")) {
        call.refuse(error::invalidProperty());
    } else if (value.userType() != QMetaType::Bool) {
        call.refuse(error::invalidArguments());
    } else {
        m_state.set(property, value.toBool());
        call.reply();
    }
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

void Connman::getTetheringClients(const Call &call)
{
    call.reply({QStringList()});
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

void Connman::registerCounter(const Call &call)
{
    if (m_counters.contains(counterKey(call))) {
        call.refuse(error::alreadyExists());
    } else {
        m_counters.insert(counterKey(call));
        call.reply();
    }
}

void Connman::unregisterCounter(const Call &call)
{
    if (m_counters.remove(counterKey(call))) {
        call.reply();
    } else {
        call.refuse(error::notRegistered());
    }
}

void Connman::getClockProperties(const Call &call)
{
    const auto now = static_cast<qulonglong>(QDateTime::currentSecsSinceEpoch());
    call.reply({QVariantMap{{QStringLiteral("Time"), now},
                            {QStringLiteral("TimeUpdates"), QStringLiteral("auto")},
                            {QStringLiteral("TimezoneUpdates"), QStringLiteral("auto")},
                            {QStringLiteral("Timeservers"), QStringList()},
                            {QStringLiteral("TimeserverSynced"), false}}});
}

} // namespace simulator
