#include "Speech.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QLoggingCategory>

namespace libspeech::detail {

namespace {

Q_LOGGING_CATEGORY(logSpeech, "libspeech", QtCriticalMsg)

QString serviceName()
{
    return QStringLiteral("com.tactora.Speech");
}

// Asked of the bus, which answers at once; never of the service itself.
bool isServicePresent()
{
    const QDBusConnection bus = QDBusConnection::systemBus();
    return bus.isConnected() && bus.interface()->isServiceRegistered(serviceName());
}

// Not to be activated: a request is for a service that is there.
QDBusMessage speakFromIdCall(const QString &id, const QVariantMap &request)
{
    QDBusMessage call = QDBusMessage::createMethodCall(serviceName(), QStringLiteral("/"), serviceName(),
                                                       QStringLiteral("speakFromId"));
    call.setAutoStartService(false);
    call << id << request;
    return call;
}

} // namespace

Speech::Speech(QObject *parent)
    : QObject(parent)
{
}

QUuid Speech::speakFromId(const QVariantMap &request)
{
    if (!isServicePresent()) {
        return {};
    }
    const QUuid id = QUuid::createUuid();
    send(id.toString(QUuid::WithoutBraces), request);
    return id;
}

void Speech::send(const QString &id, const QVariantMap &request)
{
    auto *call = new QDBusPendingCallWatcher(
        QDBusConnection::systemBus().asyncCall(speakFromIdCall(id, request)), this);
    QObject::connect(call, &QDBusPendingCallWatcher::finished, this, [id](QDBusPendingCallWatcher *finished) {
        finished->deleteLater();
        if (finished->isError()) {
            qCCritical(logSpeech) << "Speech request" << id << "failed:" << finished->error().message();
        }
    });
}

} // namespace libspeech::detail
