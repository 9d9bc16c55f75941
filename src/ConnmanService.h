#pragma once

#include "ConnmanProperties.h"
#include "ConnmanRemote.h"

#include <QHostAddress>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

class ConnmanServiceSignals;
class QDBusConnection;
class QDBusError;
class QDBusObjectPath;
class QDBusVariant;

/// Proxy of one ConnMan service (net.connman.Service): a cache of its properties, its state as a number,
/// and the operations on it.
///
/// Getters read only the cache; each logs one critical line and returns its fallback when the property is
/// missing or of a wrong type. Operations report failure by their result and one critical line.
class ConnmanService : public QObject
{
    Q_OBJECT

public:
    /// ConnMan's "State" strings, in order of rank: an interface has the highest state of its services.
    enum class State : int {
        Unknown = 0,
        Disconnect = 1,
        Failure = 2,
        Idle = 3,
        Association = 4,
        Configuration = 5,
        Ready = 6,
        Online = 7,
    };
    Q_ENUM(State)
    static constexpr std::size_t StateCount = 8;

    /// The ways in which IPv4 can be configured.
    enum class Configuration : int {
        Off = 0,
        Manual = 1,
        Dhcp = 2,
    };
    Q_ENUM(Configuration)

    /// How long ConnMan may take to answer a call; connecting takes it longest.
    static constexpr std::chrono::milliseconds CallTimeout{120000};

    ConnmanService(const QDBusConnection &connection, const QDBusObjectPath &path, QObject *parent);
    ~ConnmanService() override;

    QString path() const { return m_remote.path(); }
    /// The network identifier: the last element of the object path, up to its first ".".
    QString identifier() const;
    State state() const { return m_state; }
    State previousState() const { return m_previousState; }
    /// All cached properties, by ConnMan's names.
    QVariantMap properties() const { return m_properties.all(); }

    /// The signal's strength in per cent, 0 to 100; -1 when ConnMan does not tell one.
    int strength() const;
    bool isFavorite() const;
    bool getAutoConnect() const;
    QStringList security() const;
    QList<QHostAddress> getNameservers() const;
    /// The human-readable name; empty for a hidden network, which has none.
    QString name() const;
    QString type() const;
    /// The network interface the service is bound to, such as "wlan0".
    QString interface() const;
    /// The IPv4 settings in force, or those configured where the method is "manual". Keys "Method",
    /// "Address", "Netmask" and "Gateway", each a string and each only where ConnMan has one; empty when the
    /// method is not known.
    QVariantMap getIpv4Configuration() const;
    /// One of them, such as ConnmanNames::Address; empty when it is not there.
    QString getIpv4ConfigurationValue(const QString &key) const;
    /// The configured IPv6 settings, which are not the address in use. Keys "Method", "Address", "Gateway"
    /// and "Privacy", strings, and "PrefixLength", an int; each only where ConnMan has one.
    QVariantMap getIpv6Configuration() const;
    QString getIpv6ConfigurationValue(const QString &key) const;
    /// getIpv6Configuration() after a refresh of the cache.
    QVariantMap getUpdatedIpv6Configuration();

    /// Called with the service's path.
    using InterfaceListener = std::function<void(const QString &path)>;
    /// `listener` is called whenever interface() may have changed; a signal would be one more for each of
    /// thousands of services, with a single receiver.
    void setInterfaceListener(InterfaceListener listener) { m_interfaceListener = std::move(listener); }

    /// Replaces the cache by what "GetProperties" reports. Always true: a failed call keeps the old cache,
    /// so that callers go on with what is known.
    bool dbusUpdateProperties();
    /// Recomputes the state from the cached "State"; true when it changed.
    bool updateState();

    /// Writes one property and refreshes the cache, whether ConnMan took the value or not.
    bool dbusSetProperty(const QString &name, const QVariant &value);
    /// Applies an IPv4 method; the addresses count only for Configuration::Manual.
    bool configure(Configuration configuration, const QHostAddress &address, const QHostAddress &netmask,
                   const QHostAddress &gateway);
    bool configureManual(const QHostAddress &address, const QHostAddress &netmask,
                         const QHostAddress &gateway);
    bool configureIpv6(bool enable);
    bool setNameservers(const QList<QHostAddress> &servers);
    bool setAutoConnect(bool enable);
    /// Connects and waits for ConnMan's answer, CallTimeout at most, while the event loop goes on turning:
    /// agent requests, property changes and other clients' calls are served meanwhile. The end of the
    /// application ends it at once, as failed and without a word. The caller must hold a reference to the
    /// service.
    bool connect();
    /// A service that is not connected (net.connman.Error.NotConnected) or has gone counts as disconnected.
    bool disconnect();
    /// Makes ConnMan forget the service's credentials and settings.
    bool remove();

signals:
    /// Emitted after state() has taken the new value.
    void stateChanged(ConnmanService::State state);

public slots:
    /// ConnMan's "PropertyChanged" of this service.
    void propertyChanged(const QString &name, const QDBusVariant &value);
    /// Reads all properties again and follows the state.
    void serviceChanged();

private:
    QStringList stringList(const QString &key) const;
    QString string(const QString &key) const;
    bool flag(const QString &key) const;

    void tellInterfaceListener(const QVariant &formerEthernet) const;
    bool configureDhcp();
    void logFailedCall(QLatin1String method, const QDBusError &error) const;

    State m_state = State::Unknown;
    State m_previousState = State::Unknown;
    ConnmanRemote m_remote;
    ConnmanProperties m_properties;
    std::shared_ptr<ConnmanServiceSignals> m_signals;
    InterfaceListener m_interfaceListener;
};
