#pragma once

#include "CallLog.h"
#include "ConfigurationManager.h"
#include "Connman.h"
#include "Faults.h"
#include "SpeechService.h"
#include <QDBusContext>
#include <QDBusVariant>

namespace simulator {

/// The simulated device's script interface, com.tactora.Simulator at /simulator. What its members do is told
/// in com.tactora.Simulator.xml, which its adaptor is made from. A script's mistake is answered with
/// org.freedesktop.DBus.Error.InvalidArgs.
class ScriptService : public QObject, protected QDBusContext
{
    Q_OBJECT
public:
    struct Device
    {
        Connman &connman;
        ConfigurationManager &configurationManager;
        SpeechService &speech;
        CallLog &calls;
        Faults &faults;
    };
    ScriptService(QString address, Device device, QObject *parent = nullptr);
    ~ScriptService() override;

    /// Puts the interface on the bus; false (with the reason in the log) when that cannot be done.
    bool join();

    // ConnMan's objects
    QDBusObjectPath addService(const QString &identifier, const QVariantMap &properties);
    void addServices(uint first, uint count);
    void removeService(const QString &identifier);
    void setServiceProperty(const QString &identifier, const QString &name, const QDBusVariant &value,
                            bool silent);
    void removeServiceProperty(const QString &identifier, const QString &name);
    QVariantMap serviceProperties(const QString &identifier);
    QStringList services() const { return m_device.connman.services().identifiers(); }
    void addTechnology(const QString &name, const QVariantMap &properties);
    void removeTechnology(const QString &name);
    void setTechnologyProperty(const QString &name, const QString &property, const QDBusVariant &value,
                               bool silent);
    void removeTechnologyProperty(const QString &name, const QString &property);
    void emitSignal(const QDBusObjectPath &path, const QString &interface, const QString &member,
                    const QVariantList &arguments) const
    {
        m_device.connman.emitSignal(path.path(), interface, member, arguments);
    }

    // The world
    QString addNetwork(const QVariantMap &options);
    void removeNetwork(const QString &ssid);
    void setInReach(const QString &ssid, bool inReach);
    void setCable(bool plugged, const QVariantMap &options)
    {
        m_device.connman.setCable(Cable::fromOptions(plugged, options));
    }
    void setAddressesServed(bool served) { m_device.connman.setAddressesServed(served); }
    void setHardwareAddress(const QString &address) { m_device.connman.setHardwareAddress(address); }
    void setConnmanDirectory(const QString &path) { m_device.connman.setDirectory(path); }
    void setTiming(const QString &name, int milliseconds);

    // Presence
    void setPresent(const QString &name, bool present);
    void restartConnman();
    void stopConnman() { m_device.connman.stop(); }
    void startConnman();
    void eraseConnman();
    QString storedPassphrase(const QString &identifier);
    void setConfigurationReply(const QVariantMap &reply) { m_device.configurationManager.setReply(reply); }
    void setSerialNumber(int serialNumber) { m_device.configurationManager.setSerialNumber(serialNumber); }

    // Faults
    uint injectFault(const QString &interface, const QString &member, const QString &path, uint count,
                     const QVariantMap &fault);
    uint faultFired(uint id);
    void clearFaults() { m_device.faults.clear(); }

    // Observation
    QStringList calls() const { return m_device.calls.lines(); }
    void clearCalls() { m_device.calls.clear(); }
    QStringList speech() const { return m_device.speech.lines(); }
    QList<QDBusObjectPath> agents() const { return m_device.connman.agents().paths(); }
    QVariantList callAgent(const QString &member, const QVariantList &arguments, QString &error);

private:
    ServicePtr knownService(const QString &identifier);
    TechnologyPtr knownTechnology(const QString &name);
    BusService *knownBusService(const QString &name);
    void refuse(const QString &reason);

    const QString m_address;
    Device m_device;
};

} // namespace simulator
