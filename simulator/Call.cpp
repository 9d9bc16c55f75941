#include "Call.h"

#include <QDBusConnection>
#include <utility>

namespace simulator {

Call::Call(const QDBusMessage &message, QString connectionName)
    : m_message(message)
    , m_connectionName(std::move(connectionName))
{
}

void Call::reply(const QVariantList &arguments) const
{
    send(m_message.createReply(arguments));
}

void Call::refuse(const ErrorReply &error) const
{
    send(m_message.createErrorReply(error.name, error.message));
}

void Call::send(const QDBusMessage &answer) const
{
    if (m_message.isReplyRequired()) {
        QDBusConnection(m_connectionName).send(answer);
    }
}

} // namespace simulator
