#pragma once

#include "ConnmanTypes.h"
#include "LogCapture.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"

#include <QDBusConnection>
#include <QObject>
#include <QSet>

/// ConnMan on a bus of the test's own, with no services to begin with; everything logged is captured, debug
/// lines included.
class MirrorWorld : public QObject
{
    Q_OBJECT

public:
    MirrorWorld();
    ~MirrorWorld() override;

    test_support::SimulatorClient &simulator() { return m_simulator; }
    test_support::LogCapture &log() { return m_log; }
    const test_support::PrivateBus &bus() const { return m_bus; }
    /// The connection of the proxies under test.
    QDBusConnection connection() const { return m_connection; }
    /// A connection that never was one.
    static QDBusConnection noConnection();

    /// Adds a service and waits until ConnMan has announced it: proxies made later do not see that.
    QDBusObjectPath addService(const QString &identifier, const QVariantMap &properties = {});
    /// From now on "GetProperties" of any service gives exactly `properties`.
    test_support::Fault answerGetProperties(const QVariantMap &properties);
    test_support::Fault failGetProperties(const QString &errorName, const QString &message);

    void emitPropertyChanged(const QString &path, const QString &name, const QVariant &value);
    /// Announces exactly these, without the properties that the changed ones have.
    void emitServicesChanged(const QStringList &changed, const QStringList &removed);
    /// Returns when all that ConnMan has sent by now has arrived; it is not handled yet.
    void receive();
    /// Returns when all that ConnMan has sent by now has been handled. Runs no timers.
    void deliver();

    /// All warnings and critical lines so far, as "<type> <category>: <text>", in order.
    QStringList complaints() const;
    /// The debug lines of a category so far.
    QStringList debugLines(const QString &category) const;

    static QString pathOf(const QString &identifier);
    /// A call's line, as the simulator records it.
    static QString getPropertiesCall(const QString &path);

private slots:
    void announced(const ConnmanServiceInfoList &changed, const QList<QDBusObjectPath> &removed);

private:
    void removeAllServices();

    test_support::PrivateBus m_bus;
    test_support::SimulatorClient m_simulator;
    QString m_connectionName;
    QDBusConnection m_connection;
    QSet<QString> m_announced;
    test_support::LogCapture m_log;
};

/// A critical line as MirrorWorld::complaints() has it.
QString critical(const QString &category, const QString &text);
QString warning(const QString &category, const QString &text);

/// The signatures of the signals and slots that a class itself declares, in order.
QStringList ownMethods(const QMetaObject &metaObject);
