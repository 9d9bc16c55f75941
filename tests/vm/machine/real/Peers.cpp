#include "Peers.h"

#include "SpeechService.h"

#include <QDBusConnection>
#include <QDBusError>

namespace {

constexpr int systemInformationCommand = 3;

class ConfigurationManager : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tactora.ConfigurationManager")
public:
    ConfigurationManager()
    {
        const QString name = "com.tactora.ConfigurationManager"_s;
        QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
        if (!bus.registerObject("/"_s, this, QDBusConnection::ExportScriptableSlots) ||
            !bus.registerService(name)) {
            qFatal("No configuration manager: %s", qPrintable(bus.lastError().message()));
        }
    }

public slots:
    Q_SCRIPTABLE QVariantMap process(const QVariantMap &request)
    {
        if (request.value("commandId"_s).toInt() != systemInformationCommand) {
            return {};
        }
        return {{"systemInfo"_s, QVariantMap{{"serialNo"_s, Peers::serialNumber}}}};
    }
};

class RealPeers : public QObject
{
    Q_OBJECT
public:
    explicit RealPeers(test_support::SpeechRecord &record)
        : m_speech(QDBusConnection::systemBus(), record)
    {
    }

private:
    test_support::SpeechService m_speech;
    ConfigurationManager m_configurationManager;
};

} // namespace

std::unique_ptr<QObject> Peers::appear(test_support::SpeechRecord &record)
{
    return std::make_unique<RealPeers>(record);
}

#include "Peers.moc"
