#pragma once

#include "EventWait.h"
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QStringList>
#include <QVariantList>

namespace test_support {

/// A client of com.tactora.NetworkManager, on a bus connection of its own. It keeps a record of the daemon's
/// seven signals and of the replies to its own calls, in the order they arrive:
///   error("Unknown network: 'x'")
///   connect -> false
///   activeNetworks -> ["Home"]
class DaemonClient : public QObject
{
    Q_OBJECT
public:
    explicit DaemonClient(const QString &busAddress, QObject *parent = nullptr);
    ~DaemonClient() override;

    QDBusConnection connection() const { return m_connection; }

    /// Runs the event loop until the daemon owns its bus name.
    bool waitForName(int timeoutMs = eventTimeoutMs);

    /// Calls a method and runs the event loop until the reply is there, which it returns.
    QDBusMessage callForReply(const QString &method, const QVariantList &arguments = {});
    /// The same for the reply's one value, made plain; an invalid variant, and a critical line, for an error
    /// reply.
    template <typename... Arguments>
    QVariant call(const char *method, const Arguments &...arguments)
    {
        return valueOfReply(method, {QVariant::fromValue(arguments)...});
    }
    /// Sends a call; its reply shows in the record.
    template <typename... Arguments>
    void send(const char *method, const Arguments &...arguments)
    {
        sendCall(QString::fromLatin1(method), {QVariant::fromValue(arguments)...});
    }

    /// Runs the event loop until the daemon has dealt with everything that had reached it by now: calls are
    /// served one at a time, after what came before them. Leaves nothing in the record.
    void settle();

    QStringList record() const { return m_record; }
    /// The signals alone.
    QStringList heard() const;
    void clearRecord() { m_record.clear(); }
    /// Runs the event loop until the record holds `entry` `times` times.
    bool waitFor(const QString &entry, int times = 1) const;

private slots:
    void onSignal(const QDBusMessage &message);

private:
    QDBusMessage message(const QString &method, const QVariantList &arguments) const;
    static QDBusMessage waitForReply(const QDBusPendingCallWatcher *watcher);
    QDBusPendingCallWatcher *sendCall(const QString &method, const QVariantList &arguments);
    QVariant valueOfReply(const char *method, const QVariantList &arguments);

    QString m_connectionName;
    QDBusConnection m_connection;
    QStringList m_record;
};

} // namespace test_support
