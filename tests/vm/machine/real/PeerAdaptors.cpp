#include "PeerAdaptors.h"

#include <QDBusConnection>

namespace {

constexpr int systemInformationCommand = 3;

} // namespace

bool DevicePeers::appear()
{
    new SpeechAdaptor(this);
    new ConfigurationAdaptor(this);
    QDBusConnection bus = QDBusConnection::systemBus();
    return bus.registerObject(QStringLiteral("/"), this, QDBusConnection::ExportAdaptors) &&
           bus.registerService(QStringLiteral("com.tactora.Speech")) &&
           bus.registerService(QStringLiteral("com.tactora.ConfigurationManager"));
}

void SpeechAdaptor::speakFromId(const QString & /*id*/, const QVariantMap &request)
{
    m_peers->remember(request);
}

QVariantMap ConfigurationAdaptor::process(const QVariantMap &request)
{
    if (request.value(QStringLiteral("commandId")).toInt() != systemInformationCommand) {
        return {};
    }
    const QVariantMap information{{QStringLiteral("serialNo"), DevicePeers::serialNumber}};
    return {{QStringLiteral("systemInfo"), information}};
}
