#include "FakeDaemon.h"

#include "DaemonInterface.h"
#include "Text.h"
#include "Values.h"
#include <utility>

namespace {
const QString connectionName = "daemon double"_s;
}

FakeDaemon::FakeDaemon(const QString &busAddress)
    : m_connection(QDBusConnection::connectToBus(busAddress, connectionName))
    , m_isReady(m_connection.registerVirtualObject("/"_s, this) && m_connection.registerService(daemonName()))
{
}

FakeDaemon::~FakeDaemon()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

QString FakeDaemon::introspect(const QString & /*path*/) const
{
    return {};
}

bool FakeDaemon::handleMessage(const QDBusMessage &message, const QDBusConnection & /*connection*/)
{
    m_signatures << "%1(%2)"_s.arg(message.member(), message.signature());
    m_calls << message.member() + QLatin1Char(' ') + valueText(message.arguments());
    if (m_held.contains(message.member())) {
        m_waiting << message;
    } else {
        answer(message);
    }
    emit called(m_calls.constLast());
    return true;
}

void FakeDaemon::release()
{
    m_held.clear();
    for (const QDBusMessage &call : std::exchange(m_waiting, {})) {
        answer(call);
    }
}

void FakeDaemon::answer(const QDBusMessage &call)
{
    if (!m_refusal.isEmpty()) {
        m_connection.send(call.createErrorReply(m_refusal, "refused"_s));
        return;
    }
    if (m_errors.contains(call.member())) {
        sendSignal("error"_s, {m_errors.value(call.member())});
    }
    m_connection.send(call.createReply(m_answers.value(call.member(), m_answer)));
}

void FakeDaemon::sendSignal(const QString &name, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createSignal("/"_s, daemonName(), name);
    message.setArguments(arguments);
    m_connection.send(message);
}
