#pragma once

#include "ConnmanTypes.h"
#include "LogCapture.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QSet>

#include <memory>

namespace test_support {

/// Every test begins with the simulated ConnMan that has no services, and with nothing called or logged yet;
/// the proxies' debug lines are logged too. All tests of the class have one bus, which is the system bus.
class ConnmanFixture : public QObject
{
    Q_OBJECT

public:
    ConnmanFixture();

    SimulatorClient &connman() { return *m_connman; }
    LogCapture &log() { return *m_log; }
    QString busAddress() const { return m_bus.address(); }
    /// The connection of the proxies under test.
    static QDBusConnection connection() { return QDBusConnection::systemBus(); }
    /// A connection that never was one.
    static QDBusConnection noConnection();

    /// Adds a service and waits until ConnMan has announced it: proxies made later do not see that.
    QDBusObjectPath addService(const QString &identifier, const QVariantMap &properties = {});
    /// From now on "GetProperties" of any service gives exactly `properties`.
    Fault answerGetProperties(const QVariantMap &properties);
    Fault failGetProperties(const QString &errorName, const QString &message);

    void emitPropertyChanged(const QString &path, const QString &name, const QVariant &value);
    /// Announces exactly these, without the properties that the changed ones have.
    void emitServicesChanged(const QStringList &changed, const QStringList &removed);
    /// Returns when all that ConnMan has sent by now has arrived; it is not handled yet.
    void receive();
    /// Returns when all that ConnMan has sent by now has been handled. Runs no timers.
    void deliver();

    QStringList calls() { return connman().calls(); }
    QStringList complaints() { return log().complaints(); }
    QStringList debugLines(const QString &category) { return log().lines(category, QtDebugMsg); }
    /// Forgets what was called and logged so far.
    void forget();

    static QString pathOf(const QString &identifier);
    /// A call's line, as the simulator records it.
    static QString callLine(const QString &path, const QString &interface, const QString &member,
                            const QString &arguments = {});
    static QString getPropertiesCall(const QString &path);

protected slots:
    void init();
    void cleanup();

private slots:
    void announced(const ConnmanServiceInfoList &changed, const QList<QDBusObjectPath> &removed);

private:
    const PrivateBus m_bus;
    // As in the daemon: Qt then follows ConnMan's coming and going without gaps.
    const QDBusServiceWatcher m_presence;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<SimulatorClient> m_connman;
    QSet<QString> m_announced;
};

} // namespace test_support
