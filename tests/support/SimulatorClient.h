#pragma once

#include "ChildProcess.h"
#include "Fault.h"
#include "scriptproxy.h"
#include <memory>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace test_support {

/// The simulated device: starts `device-simulator` on a bus and scripts it.
///
/// The methods are those of the interface com.tactora.Simulator (simulator/com.tactora.Simulator.xml, which
/// explains them) and block until the simulator has answered, without running the event loop; the exceptions,
/// which do run it, are waitForCall() and callAgent(). A call the simulator refuses is one critical line.
class SimulatorClient : public QObject
{
    Q_OBJECT
public:
    /// How long ConnMan's waits take: a few milliseconds, or as long as usual.
    enum class Timings { Fast, Real };
    /// `address`: the bus to live on.
    explicit SimulatorClient(const QString &address, Timings timings = Timings::Fast,
                             QObject *parent = nullptr);
    ~SimulatorClient() override;

    /// Whether the simulator runs and all its bus names are there.
    bool isReady() const { return m_ready; }
    qint64 processId() const { return m_process->processId(); }

    QDBusObjectPath addService(const QString &identifier, const QVariantMap &properties = {})
    {
        return answered(m_script.addService(identifier, properties));
    }
    void addServices(uint first, uint count) { answered(m_script.addServices(first, count)); }
    void removeService(const QString &identifier) { answered(m_script.removeService(identifier)); }
    void setServiceProperty(const QString &identifier, const QString &name, const QVariant &value,
                            bool silent = false)
    {
        answered(m_script.setServiceProperty(identifier, name, QDBusVariant(value), silent));
    }
    void removeServiceProperty(const QString &identifier, const QString &name)
    {
        answered(m_script.removeServiceProperty(identifier, name));
    }
    QVariantMap serviceProperties(const QString &identifier)
    {
        return answered(m_script.serviceProperties(identifier));
    }
    QStringList services() { return answered(m_script.services()); }

    void addTechnology(const QString &name, const QVariantMap &properties = {})
    {
        answered(m_script.addTechnology(name, properties));
    }
    void removeTechnology(const QString &name) { answered(m_script.removeTechnology(name)); }
    void setTechnologyProperty(const QString &name, const QString &property, const QVariant &value,
                               bool silent = false)
    {
        answered(m_script.setTechnologyProperty(name, property, QDBusVariant(value), silent));
    }
    void removeTechnologyProperty(const QString &name, const QString &property)
    {
        answered(m_script.removeTechnologyProperty(name, property));
    }
    void emitSignal(const QString &path, const QString &interface, const QString &member,
                    const QVariantList &arguments)
    {
        answered(m_script.emitSignal(QDBusObjectPath(path), interface, member, arguments));
    }

    /// Returns the identifier that the network's service has or will have.
    QString addNetwork(const QVariantMap &options) { return answered(m_script.addNetwork(options)); }
    void removeNetwork(const QString &ssid) { answered(m_script.removeNetwork(ssid)); }
    void setInReach(const QString &ssid, bool inReach) { answered(m_script.setInReach(ssid, inReach)); }
    void setCable(bool plugged, const QVariantMap &options = {})
    {
        answered(m_script.setCable(plugged, options));
    }
    void setAddressesServed(bool served) { answered(m_script.setAddressesServed(served)); }
    void setHardwareAddress(const QString &address) { answered(m_script.setHardwareAddress(address)); }
    void setConnmanDirectory(const QString &path) { answered(m_script.setConnmanDirectory(path)); }
    void setTiming(const QString &name, int milliseconds)
    {
        answered(m_script.setTiming(name, milliseconds));
    }

    void setPresent(const QString &name, bool present) { answered(m_script.setPresent(name, present)); }
    void restartConnman() { answered(m_script.restartConnman()); }
    void stopConnman() { answered(m_script.stopConnman()); }
    void startConnman() { answered(m_script.startConnman()); }
    void eraseConnman() { answered(m_script.eraseConnman()); }
    QString storedPassphrase(const QString &identifier)
    {
        return answered(m_script.storedPassphrase(identifier));
    }
    void setConfigurationReply(const QVariantMap &reply) { answered(m_script.setConfigurationReply(reply)); }
    void setSerialNumber(int serialNumber) { answered(m_script.setSerialNumber(serialNumber)); }

    /// Faults on `path`; empty means any path. `count` 0: every call from now on.
    Fault injectFault(const QString &interface, const QString &member, const FaultKind &kind,
                      const QString &path = {}, uint count = 1);
    uint faultFired(uint id) { return answered(m_script.faultFired(id)); }
    void clearFaults() { answered(m_script.clearFaults()); }

    QStringList calls() { return answered(m_script.calls()); }
    /// The calls so far that begin with `prefix`.
    QStringList callsStartingWith(const QString &prefix);
    void clearCalls() { answered(m_script.clearCalls()); }
    /// Runs the event loop until a call line that is or begins with `line` has been recorded since the last
    /// clearCalls(); false when none came in time.
    bool waitForCall(const QString &line, int timeoutMs = defaultTimeoutMs);
    QStringList speech() { return answered(m_script.speech()); }
    QList<QDBusObjectPath> agents() { return answered(m_script.agents()); }

    struct AgentReply
    {
        QVariantList arguments;
        /// "<name>: <message>" when the agent refused, else empty.
        QString error;
    };
    /// Calls the registered agent as ConnMan would; the agent may live in this very process.
    AgentReply callAgent(const QString &member, const QVariantList &arguments);

    static constexpr int defaultTimeoutMs = 30000;

signals:
    /// A call reached ConnMan or the configuration manager.
    void called(const QString &line);
    void spoke(const QString &id, const QVariantMap &request);

private:
    void start(const QString &address, Timings timings);
    bool waitForName();
    static void reportRefusal(const QDBusError &error);
    /// The reply once it has come.
    template <typename Reply>
    static Reply answered(Reply reply)
    {
        reply.waitForFinished();
        reportRefusal(reply.error());
        return reply;
    }

    QString m_connectionName;
    QDBusConnection m_connection;
    ScriptProxy m_script;
    std::unique_ptr<ChildProcess> m_process;
    bool m_ready = false;
};

} // namespace test_support
