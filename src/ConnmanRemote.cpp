#include "ConnmanRemote.h"

#include "ConnmanNames.h"

#include <QDBusMessage>
#include <QDBusPendingCall>

#include <utility>

ConnmanRemote::ConnmanRemote(QDBusConnection connection, QString path, QLatin1String interface,
                             std::chrono::milliseconds timeout)
    : m_connection(std::move(connection))
    , m_path(std::move(path))
    , m_interface(interface)
    , m_timeoutMs(static_cast<int>(timeout.count()))
{
}

QDBusMessage ConnmanRemote::call(QLatin1String method, const QVariantList &arguments) const
{
    QDBusMessage request = message(method);
    request.setArguments(arguments);
    return m_connection.call(request, QDBus::Block, m_timeoutMs);
}

QDBusPendingCall ConnmanRemote::asyncCall(QLatin1String method) const
{
    return m_connection.asyncCall(message(method), m_timeoutMs);
}

bool ConnmanRemote::subscribe(QLatin1String signal, QLatin1String signature, QObject *receiver,
                              const char *slot)
{
    return m_connection.connect(ConnmanNames::Service, m_path, m_interface, signal, signature, receiver,
                                slot);
}

QDBusMessage ConnmanRemote::message(QLatin1String method) const
{
    return QDBusMessage::createMethodCall(ConnmanNames::Service, m_path, m_interface, method);
}
