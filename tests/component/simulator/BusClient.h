#pragma once

#include "Text.h"
#include <memory>
#include <optional>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

namespace simulator_test {

inline const QString connman = "net.connman"_s;
inline const QString configurationManager = "com.tactora.ConfigurationManager"_s;
inline const QString speech = "com.tactora.Speech"_s;
inline const QString wifi = "wifi"_s;
inline const QString servicesChanged = "ServicesChanged"_s;
inline const QString invalidArguments = "net.connman.Error.InvalidArguments: Invalid arguments"_s;

inline const QString cableId = "ethernet_020000000100_cable"_s;
/// "Home", with a passphrase or open.
inline const QString pskId = "wifi_020000000200_486f6d65_managed_psk"_s;
inline const QString openId = "wifi_020000000200_486f6d65_managed_none"_s;
inline const QString hiddenId = "wifi_020000000200_hidden_managed_psk"_s;
/// Services that a script adds, with no network behind them.
inline const QString rawId = "wifi_raw_managed_psk"_s;
inline const QString otherId = "wifi_other_managed_psk"_s;

/// What came back from a call: arguments as they arrived, or an error as "<name>: <text>".
struct Answer
{
    bool isError = false;
    QString error;
    QVariantList arguments;
    QString signature;

    /// The arguments in GVariant text form, or the error.
    QString text() const;
};

/// A call under way.
class PendingAnswer : public QObject
{
    Q_OBJECT
public:
    PendingAnswer(const QDBusConnection &connection, const QDBusMessage &call);

    bool hasCome() const { return m_answer.has_value(); }
    /// Runs the event loop until it has come.
    Answer wait();

signals:
    void come();

private:
    std::optional<Answer> m_answer;
};

/// A program on the bus that calls ConnMan and hears all its signals.
class BusClient : public QObject
{
    Q_OBJECT
public:
    explicit BusClient(const QString &address);
    ~BusClient() override;

    QDBusConnection connection() const { return m_connection; }
    bool isOnTheBus(const QString &name) const;
    bool waitUntilGone(const QString &name) const;

    Answer call(const QString &service, const QString &path, const QString &interface, const QString &member,
                const QVariantList &arguments = {}) const;
    Answer manager(const QString &member, const QVariantList &arguments = {}) const;
    Answer technology(const QString &type, const QString &member, const QVariantList &arguments = {}) const;
    Answer service(const QString &identifier, const QString &member,
                   const QVariantList &arguments = {}) const;
    Answer setServiceProperty(const QString &identifier, const QString &property,
                              const QVariant &value) const;
    std::unique_ptr<PendingAnswer> startService(const QString &identifier, const QString &member) const;
    /// A service's property as it arrives, in GVariant text form; empty when there is none.
    QString property(const QString &identifier, const QString &name) const;

    /// The signals so far, each "<last element of the path> <member>(<arguments>)".
    QStringList signalLines() const { return m_lines; }
    /// Those of them that have `part` in them.
    QStringList signalLines(const QString &part) const;
    /// The values "State" has had, in order, of the service.
    QStringList states(const QString &identifier) const;
    void clear() { m_lines.clear(); }
    void stopListening();
    /// Runs the event loop until such a line has come.
    bool waitForSignal(const QString &part);
    bool waitForState(const QString &identifier, const QString &state);

private slots:
    void record(const QDBusMessage &signal);

private:
    QString m_name;
    QDBusConnection m_connection;
    QStringList m_lines;
};

} // namespace simulator_test
