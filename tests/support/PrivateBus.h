#pragma once

#include <memory>
#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

class QProcess;

namespace test_support {

/// What the private bus allows each connection. The defaults are those of dbus-daemon's system bus,
/// stated here because a package on the machine may have raised the machine's own.
struct BusLimits
{
    int maxMatchRulesPerConnection = 512;
    int maxRepliesPerConnection = 128;
    /// A bus name that the bus's policy gives to nobody.
    QString refusedName;
};

/// A bus of the test's own: a `dbus-daemon` in a temporary directory that lets everybody do everything (but
/// what the limits say).
///
/// While it lives, DBUS_SYSTEM_BUS_ADDRESS and DBUS_SESSION_BUS_ADDRESS of this process (and so of its
/// children) name it. Make it before the first QDBusConnection::systemBus(): Qt keeps that connection for the
/// life of the process. The daemon ends with the object, and with the process however that ends.
class PrivateBus
{
public:
    explicit PrivateBus(const BusLimits &limits = {});
    ~PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    /// The address to connect to; empty when the daemon could not be started (a critical line says why).
    QString address() const { return m_address; }
    bool isRunning() const;
    /// What the daemon has written to its log so far (refused match rules, for one).
    QString log() const;

    /// Ends the daemon now, as a bus that goes away under its clients. Returns when it is gone.
    void stop();

private:
    bool writeConfiguration(const BusLimits &limits) const;
    QString configurationFile() const;
    QString logFile() const;
    void start();
    void exportAddress();
    void restoreEnvironment() const;

    QTemporaryDir m_directory;
    std::unique_ptr<QProcess> m_daemon;
    QString m_address;
    QByteArray m_previousSystemAddress;
    QByteArray m_previousSessionAddress;
};

} // namespace test_support
