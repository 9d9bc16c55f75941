#include "DevicePeers.h"

#include <QDBusConnection>

namespace {

constexpr int networkManagerSentences = 4;
constexpr int systemInformationCommand = 3;

} // namespace

DevicePeers::DevicePeers()
{
    new SpeechAdaptor(this);
    new ConfigurationAdaptor(this);
}

bool DevicePeers::appear()
{
    QDBusConnection bus = QDBusConnection::systemBus();
    return bus.registerObject(QStringLiteral("/"), this, QDBusConnection::ExportAdaptors) &&
           bus.registerService(QStringLiteral("com.tactora.Speech")) &&
           bus.registerService(QStringLiteral("com.tactora.ConfigurationManager"));
}

void DevicePeers::remember(const QVariantMap &request)
{
    if (request.value(QStringLiteral("serviceId")).toInt() != networkManagerSentences) {
        m_spoken.append(QStringLiteral("not a sentence of the network manager"));
        return;
    }
    QString sentence = request.value(QStringLiteral("sentenceId")).toString();
    if (request.contains(QStringLiteral("arguments"))) {
        sentence += QStringLiteral(": ") +
                    request.value(QStringLiteral("arguments")).toStringList().join(QLatin1Char(' '));
    }
    m_spoken.append(sentence);
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
