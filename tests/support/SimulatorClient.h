#pragma once

#include "ChildProcess.h"
#include "Fault.h"
#include <memory>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
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
    /// `address`: the bus to live on. `arguments`: more of the simulator's command line ("--fast" is given
    /// unless realTimings() is asked for).
    enum class Timings { Fast, Real };
    explicit SimulatorClient(const QString &address, Timings timings = Timings::Fast,
                             QObject *parent = nullptr);
    ~SimulatorClient() override;

    /// Whether the simulator runs and all its bus names are there.
    bool isReady() const { return m_ready; }
    qint64 processId() const { return m_process->processId(); }

    QDBusObjectPath addService(const QString &identifier, const QVariantMap &properties = {});
    void addServices(uint first, uint count);
    void removeService(const QString &identifier);
    void setServiceProperty(const QString &identifier, const QString &name, const QVariant &value,
                            bool silent = false);
    void removeServiceProperty(const QString &identifier, const QString &name);
    QVariantMap serviceProperties(const QString &identifier);
    QStringList services();

    void addTechnology(const QString &name, const QVariantMap &properties = {});
    void removeTechnology(const QString &name);
    void setTechnologyProperty(const QString &name, const QString &property, const QVariant &value,
                               bool silent = false);
    void removeTechnologyProperty(const QString &name, const QString &property);
    void emitSignal(const QString &path, const QString &interface, const QString &member,
                    const QVariantList &arguments);

    /// Returns the identifier that the network's service has or will have.
    QString addNetwork(const QVariantMap &options);
    void removeNetwork(const QString &ssid);
    void setInReach(const QString &ssid, bool inReach);
    void setCable(bool plugged, const QVariantMap &options = {});
    void setAddressesServed(bool served);
    void setHardwareAddress(const QString &address);
    void setConnmanDirectory(const QString &path);
    void setTiming(const QString &name, int milliseconds);

    void setPresent(const QString &name, bool present);
    void restartConnman();
    void stopConnman();
    void startConnman();
    void eraseConnman();
    QString storedPassphrase(const QString &identifier);
    void setConfigurationReply(const QVariantMap &reply);
    void setSerialNumber(int serialNumber);

    /// Faults on `path`; empty means any path. `count` 0: every call from now on.
    Fault injectFault(const QString &interface, const QString &member, const FaultKind &kind,
                      const QString &path = {}, uint count = 1);
    uint faultFired(uint id);
    void clearFaults();

    QStringList calls();
    /// The calls so far that begin with `prefix`.
    QStringList callsStartingWith(const QString &prefix);
    void clearCalls();
    /// Runs the event loop until a call line that is or begins with `line` has been recorded since the last
    /// clearCalls(); false when none came in time.
    bool waitForCall(const QString &line, int timeoutMs = defaultTimeoutMs);
    QStringList speech();
    QList<QDBusObjectPath> agents();

    struct AgentReply
    {
        QVariantList arguments;
        /// "<name>: <message>" when the agent refused, else empty.
        QString error;
    };
    /// Calls the registered agent as ConnMan would; the agent may live in this very process.
    AgentReply callAgent(const QString &member, const QVariantList &arguments);

    /// Asks the simulator to end; true when it did so with exit status 0.
    bool quit();

    static constexpr int defaultTimeoutMs = 30000;

signals:
    /// A call reached ConnMan or the configuration manager.
    void called(const QString &line);
    void spoke(const QString &id, const QVariantMap &request);

private:
    void start(const QString &address, Timings timings);
    bool waitForName();
    QDBusMessage request(const QString &member, const QVariantList &arguments) const;
    QDBusMessage call(const QString &member, const QVariantList &arguments = {}) const;

    QString m_connectionName;
    QDBusConnection m_connection;
    std::unique_ptr<ChildProcess> m_process;
    bool m_ready = false;
};

} // namespace test_support
