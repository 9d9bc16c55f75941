#include "ScriptService.h"

#include "ConnmanErrors.h"
#include "scriptadaptor.h"
#include <QDBusConnection>
#include <QDBusError>
#include <QDebug>
#include <utility>

namespace simulator {

namespace {
const QString scriptName = QStringLiteral("com.tactora.Simulator");
const QString scriptPath = QStringLiteral("/simulator");
const QString connectionName = QStringLiteral("script");
} // namespace

ScriptService::ScriptService(QString address, Device device, QObject *parent)
    : QObject(parent)
    , m_address(std::move(address))
    , m_device(device)
{
    auto *adaptor = new ScriptAdaptor(this);
    connect(&m_device.calls, &CallLog::recorded, adaptor, &ScriptAdaptor::called);
    connect(&m_device.speech, &SpeechService::spoke, adaptor, &ScriptAdaptor::spoke);
}

ScriptService::~ScriptService()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

bool ScriptService::join()
{
    QDBusConnection bus = QDBusConnection::connectToBus(m_address, connectionName);
    const bool joined = bus.registerObject(scriptPath, this) && bus.registerService(scriptName);
    if (!joined) {
        qCritical() << "Unable to be" << scriptName << "on" << m_address << ":" << bus.lastError().message();
    }
    return joined;
}

void ScriptService::setTiming(const QString &name, int milliseconds)
{
    if (!m_device.connman.timings().set(name, milliseconds)) {
        refuse(QStringLiteral("No such timing: ") + name);
    }
}

void ScriptService::setPresent(const QString &name, bool present)
{
    BusService *service = knownBusService(name);
    if (service == nullptr || service->isPresent() == present) {
        return;
    }
    if (present) {
        if (!service->join()) {
            refuse(QStringLiteral("Unable to take the name ") + name);
        }
        return;
    }
    service->leave();
}

void ScriptService::restartConnman()
{
    stopConnman();
    startConnman();
}

void ScriptService::startConnman()
{
    if (!m_device.connman.isPresent() && !m_device.connman.start()) {
        refuse(QStringLiteral("ConnMan did not come back"));
    }
}

void ScriptService::eraseConnman()
{
    if (m_device.connman.isPresent()) {
        refuse(QStringLiteral("ConnMan is running"));
    } else {
        m_device.connman.erase();
    }
}

uint ScriptService::injectFault(const QString &interface, const QString &member, const QString &path,
                                uint count, const QVariantMap &fault)
{
    const std::optional<Fault> parsed = Fault::fromMap(fault);
    if (!parsed) {
        refuse(QStringLiteral("No such kind of fault: ") + fault.value(QStringLiteral("kind")).toString());
        return 0;
    }
    return m_device.faults.inject({interface, member, path}, count, *parsed);
}

uint ScriptService::faultFired(uint id)
{
    if (!m_device.faults.isKnown(id)) {
        refuse(QStringLiteral("No such fault: ") + QString::number(id));
    }
    return m_device.faults.timesFired(id);
}

// Answered later: the agent may be the very program that waits for this answer.
QVariantList ScriptService::callAgent(const QString &member, const QVariantList &arguments,
                                      QString & /*error*/)
{
    setDelayedReply(true);
    const QDBusMessage request = message();
    const auto answer = [request](const AgentReply &reply) {
        const QString error =
            reply.isError() ? reply.error.name + QStringLiteral(": ") + reply.error.message : QString();
        QDBusConnection(connectionName)
            .send(request.createReply({QVariant(reply.isError() ? QVariantList() : reply.arguments), error}));
    };
    if (!m_device.connman.agents().call({}, {}, member, arguments, answer)) {
        answer({{}, {}, error::notRegistered});
    }
    return {};
}

BusService *ScriptService::knownBusService(const QString &name)
{
    for (BusService *service : {static_cast<BusService *>(&m_device.connman),
                                static_cast<BusService *>(&m_device.configurationManager),
                                static_cast<BusService *>(&m_device.speech)}) {
        if (service->name() == name) {
            return service;
        }
    }
    refuse(QStringLiteral("No such bus name here: ") + name);
    return nullptr;
}

void ScriptService::refuse(const QString &reason)
{
    sendErrorReply(QDBusError::InvalidArgs, reason);
}

} // namespace simulator
