#pragma once

#include "Call.h"
#include <functional>
#include <QDBusConnection>
#include <QDBusVirtualObject>

namespace simulator {

class CallLog;
struct Fault;
class Faults;

/// What every simulated service shares.
struct Instruments
{
    CallLog *calls;
    Faults *faults;
};

/// A service of the simulated device: one bus name on a bus connection of its own, all objects below "/".
/// It records the calls that arrive, lets faults happen to them and hands the rest to the derived class.
class BusService : public QDBusVirtualObject
{
    Q_OBJECT
public:
    BusService(QString address, QString name, Instruments instruments, QObject *parent = nullptr);
    ~BusService() override;

    QString name() const { return m_name; }
    bool isPresent() const { return !m_connectionName.isEmpty(); }

    /// Connects to the bus and claims the name; false (with the reason in the log) when that cannot be done.
    bool join();
    /// Drops the bus connection: calls under way end as after a crash.
    void leave();

    /// The present connection; a closed one while the service is away.
    QDBusConnection connection() const { return QDBusConnection(m_connectionName); }
    void emitSignal(const QString &path, const QString &interface, const QString &member,
                    const QVariantList &arguments) const;

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) final;

signals:
    void joined();
    void left();

protected:
    virtual void handleCall(const Call &call) = 0;
    /// How a call that arrived is recorded.
    virtual void recordCall(const Call &call);

private:
    void suffer(const Fault &fault, const Call &call);
    /// Unless the service has left the bus by then.
    void later(int milliseconds, const std::function<void()> &answer);

    const QString m_address;
    const QString m_name;
    const Instruments m_instruments;
    QString m_connectionName;
};

} // namespace simulator
