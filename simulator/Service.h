#pragma once

#include "Call.h"
#include <functional>
#include <memory>
#include <optional>
#include <QString>
#include <QVariantMap>

namespace simulator {

/// Why a service is connecting or connected. What failed for its own reasons is not put to the agent.
enum class ConnectReason { None, Auto, User };

/// One of ConnMan's services.
struct Service
{
    explicit Service(QString serviceIdentifier);

    const QString identifier;
    /// As the bus sees them. Scripts may put anything here, so whoever reads one asks for its type.
    QVariantMap properties;

    /// The network's name on the air; empty for a service that no access point stands behind.
    QString ssid;
    /// What ConnMan remembers of the credentials.
    QString passphrase;
    QString identity;
    QString pin;
    bool useWps = false;
    /// Its IPv4 was set anew on a connection that stands.
    bool isReconfigured = false;
    /// Disconnected by the user: not connected automatically any more.
    bool ignored = false;

    ConnectReason reason = ConnectReason::None;
    /// The Connect that waits for its answer.
    std::optional<Call> pendingConnect;
    /// Counts the attempts, so that what an earlier one had planned does not happen to a later one.
    int attempt = 0;

    QString path() const;
    QString type() const { return properties.value(QStringLiteral("Type")).toString(); }
    QString state() const { return properties.value(QStringLiteral("State")).toString(); }
    QString error() const { return properties.value(QStringLiteral("Error")).toString(); }
    QString name() const { return properties.value(QStringLiteral("Name")).toString(); }
    int strength() const { return properties.value(QStringLiteral("Strength")).toInt(); }
    bool isFavorite() const { return properties.value(QStringLiteral("Favorite")).toBool(); }
    bool connectsByItself() const { return properties.value(QStringLiteral("AutoConnect")).toBool(); }
    bool isImmutable() const { return properties.value(QStringLiteral("Immutable")).toBool(); }
    bool isWifi() const { return type() == QLatin1String("wifi"); }
    bool isHidden() const { return isWifi() && !properties.contains(QStringLiteral("Name")); }
    bool isConnected() const;
    bool isConnecting() const;
    bool isIdle() const;
    bool hasSecurity(const QString &security) const;
    /// Answers the Connect that waits, if one does.
    void answerConnect();
    void refuseConnect(const ErrorReply &reply);
    /// The "Method" of "IPv4.Configuration" or "IPv6.Configuration".
    QString method(const QString &configuration) const;
};
using ServicePtr = std::shared_ptr<Service>;

/// Runs `step` after that time, unless the service's attempt or `context` has ended by then.
void later(QObject *context, const ServicePtr &service, int milliseconds, const std::function<void()> &step);

/// The properties ConnMan 1.41 gives a new service; the type is told from the identifier's prefix.
QVariantMap newServiceProperties(const QString &identifier,
                                 const QString &cardAddress = QStringLiteral("02:00:00:00:02:00"));

} // namespace simulator
