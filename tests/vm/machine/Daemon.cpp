#include "Daemon.h"

#include "BusCall.h"
#include "Connman.h"
#include "Eventually.h"
#include "Text.h"

#include <QDBusConnection>
#include <QDebug>

namespace {

const QString daemonName = "com.tactora.NetworkManager"_s;
const QString daemonPath = "/"_s;

/// Longer than any one operation of the daemon may block (a Connect is given up after 120 s).
constexpr int callTimeoutMs = 180000;

} // namespace

Daemon::Daemon(const QString &keyboardDevice)
    : m_program(makeDaemon(keyboardDevice))
{
    const QString anySignal;
    QDBusConnection::systemBus().connect({}, daemonPath, daemonName, anySignal, this,
                                         SLOT(record(QDBusMessage)));
}

bool Daemon::startAndWait()
{
    return m_program->start() && eventually([] { return isOnBus(daemonName); });
}

bool Daemon::stopAndWait()
{
    return m_program->stop() && eventually([] { return !isOnBus(daemonName); });
}

QVariant Daemon::call(const QString &method, const QVariantList &arguments)
{
    const QDBusMessage reply =
        callOnBus(daemonName, daemonPath, daemonName, method, arguments, callTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        qWarning().noquote() << method << "was answered with" << reply.errorName() << reply.errorMessage();
        return {};
    }
    return plain(reply.arguments().value(0));
}

void Daemon::begin(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(daemonName, daemonPath, daemonName, method);
    call.setArguments(arguments);
    QDBusConnection::systemBus().send(call);
}

void Daemon::record(const QDBusMessage &signal)
{
    QStringList arguments;
    const QVariantList values = signal.arguments();
    for (const QVariant &value : values) {
        arguments.append(value.toString());
    }
    m_received.append("%1(%2)"_s.arg(signal.member(), arguments.join(", "_s)));
}
