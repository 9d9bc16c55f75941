#include "BusService.h"

#include "CallLog.h"
#include "Faults.h"
#include <QDBusError>
#include <QDebug>
#include <QTimer>
#include <QUuid>
#include <utility>

namespace simulator {

namespace {
// Introspect, Ping and the like are answered by Qt.
bool isStandardInterface(const QString &interface)
{
    return interface.startsWith(QLatin1String("org.freedesktop.DBus."));
}
} // namespace

BusService::BusService(QString address, QString name, Instruments instruments, QObject *parent)
    : QDBusVirtualObject(parent)
    , m_address(std::move(address))
    , m_name(std::move(name))
    , m_instruments(instruments)
{
}

// Without left(): who would hear it is half destroyed already.
BusService::~BusService()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
}

bool BusService::join()
{
    // A name of its own each time: answers to calls of an earlier life must not find the new connection.
    m_connectionName = m_name + QLatin1Char('-') + QUuid::createUuid().toString(QUuid::Id128);
    QDBusConnection connection = QDBusConnection::connectToBus(m_address, m_connectionName);
    if (!connection.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath) ||
        !connection.registerService(m_name)) {
        qCritical() << "Unable to be" << m_name << "on" << m_address << ":"
                    << connection.lastError().message();
        leave();
        return false;
    }
    emit joined();
    return true;
}

void BusService::leave()
{
    if (!isPresent()) {
        return;
    }
    // The bus may notice a closed connection late; who joins again must find the name free.
    connection().unregisterService(m_name);
    QDBusConnection::disconnectFromBus(m_connectionName);
    m_connectionName.clear();
    emit left();
}

void BusService::emitSignal(const QString &path, const QString &interface, const QString &member,
                            const QVariantList &arguments) const
{
    if (isPresent()) {
        QDBusMessage signal = QDBusMessage::createSignal(path, interface, member);
        signal.setArguments(arguments);
        connection().send(signal);
    }
}

bool BusService::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (isStandardInterface(message.interface())) {
        return false;
    }
    if (connection.name() != m_connectionName) {
        return true; // arrived on a connection that has been dropped meanwhile
    }
    const Call call(message, m_connectionName);
    recordCall(call);
    if (const std::optional<Fault> fault = m_instruments.faults->take(call)) {
        suffer(*fault, call);
    } else {
        handleCall(call);
    }
    return true;
}

void BusService::recordCall(const Call &call)
{
    m_instruments.calls->record(callLine(call));
}

void BusService::suffer(const Fault &fault, const Call &call)
{
    switch (fault.kind) {
    case Fault::Kind::Error:
        later(fault.milliseconds, [call, error = fault.error] { call.refuse(error); });
        break;
    case Fault::Kind::Reply:
        later(fault.milliseconds, [call, arguments = fault.arguments] { call.reply(arguments); });
        break;
    case Fault::Kind::Delay:
        later(fault.milliseconds, [this, call] { handleCall(call); });
        break;
    case Fault::Kind::Never:
        break;
    case Fault::Kind::Vanish:
        leave();
        break;
    }
}

void BusService::later(int milliseconds, const std::function<void()> &answer)
{
    if (milliseconds <= 0) {
        answer();
        return;
    }
    QTimer::singleShot(milliseconds, this, [this, answer, life = m_connectionName] {
        if (life == m_connectionName) {
            answer();
        }
    });
}

} // namespace simulator
