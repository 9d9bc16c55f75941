#include "PeerAdaptors.h"
#include "Text.h"

#include <QDBusConnection>

namespace {

constexpr int systemInformationCommand = 3;

} // namespace

bool DevicePeers::appear()
{
    new SpeechAdaptor(this);
    new ConfigurationAdaptor(this);
    QDBusConnection bus = QDBusConnection::systemBus();
    return bus.registerObject("/"_s, this, QDBusConnection::ExportAdaptors) &&
           bus.registerService("com.tactora.Speech"_s) &&
           bus.registerService("com.tactora.ConfigurationManager"_s);
}

void SpeechAdaptor::speakFromId(const QString & /*id*/, const QVariantMap &request)
{
    m_peers->remember(request);
}

QVariantMap ConfigurationAdaptor::process(const QVariantMap &request)
{
    if (request.value("commandId"_s).toInt() != systemInformationCommand) {
        return {};
    }
    const QVariantMap information{{"serialNo"_s, DevicePeers::serialNumber}};
    return {{"systemInfo"_s, information}};
}
