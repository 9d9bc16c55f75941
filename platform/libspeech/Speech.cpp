#include "Speech.h"

#include <libtactora/DBusService.h>
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
    , m_watcher(std::make_unique<libtactora::DBusService>(QDBusConnection::systemBus(), serviceName()))
{
    QObject::connect(m_watcher.get(), &libtactora::DBusService::connected, this,
                     [this] { m_isPresent = true; });
    QObject::connect(m_watcher.get(), &libtactora::DBusService::disconnected, this,
                     [this] { m_isPresent = false; });
}

Speech::~Speech() = default;

QUuid Speech::speakFromId(const QVariantMap &request)
{
    if (!isServicePresent()) {
        return {};
    }
    const QUuid id = QUuid::createUuid();
    send(id.toString(QUuid::WithoutBraces), request);
    return id;
}

// What the watcher told is old news as long as the event loop has not run, as at start-up. So "absent" is
// asked again, of the bus itself; a "present" that is no longer true shows as a failed request.
bool Speech::isServicePresent()
{
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        return false;
    }
    m_isPresent = m_isPresent || bus.interface()->isServiceRegistered(serviceName());
    return m_isPresent;
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
