#pragma once

#include "ConnmanRemote.h"
#include "ConnmanService.h"
#include "ConnmanTypes.h"
#include "InterfaceStates.h"

#include <QDBusConnection>
#include <QHash>
#include <QList>
#include <QObject>

#include <functional>
#include <memory>

class ConnmanAnnouncements;
class ConnmanServiceSignals;
class QDBusObjectPath;
class QDeadlineTimer;
class QDBusVariant;

/// Proxy of ConnMan's manager (net.connman.Manager): the registry of all services, kept in step with
/// "ServicesChanged", and one state per network interface: the highest of the services on it. When ConnMan
/// leaves the bus, the registry is empty until ConnMan announces its services anew.
///
/// Every call blocks; a failure is one critical line and a false result.
class ConnmanManager : public QObject
{
    Q_OBJECT

public:
    using InterfaceState = ConnmanService::State;

    /// Subscribes to ConnMan; the registry is first filled on the next pass of the event loop, so that
    /// receivers connected right after construction see every service.
    ConnmanManager(const QDBusConnection &connection, QObject *parent);
    ~ConnmanManager() override;

    /// ConnMan's bus name, and the manager's object and interface.
    QString serviceName() const;
    QString serviceObject() const;
    QString interfaceName() const;

    /// Adds every service that "GetServices" lists and that is not yet registered.
    bool updateServices();
    /// Registers one service; false when it is registered already.
    bool addService(const QDBusObjectPath &path);
    void remService(const QDBusObjectPath &path);
    /// All registered services, in no defined order.
    QList<std::shared_ptr<ConnmanService>> services() const;

    /// Whether ConnMan lists a technology whose object path contains `name`.
    bool hasTechnology(const QString &name);
    /// Makes the object at `path` of this process ConnMan's agent.
    bool registerAgent(const QDBusObjectPath &path);

    /// Handles what ConnMan has announced by now, and the first fill if that is still due; no other events.
    void deliverAnnouncements();
    /// Handles what ConnMan has announced by now and then each further announcement, and no other events,
    /// until `isEnough`, asked after each look, or the deadline ends it. (What a scan found is announced some
    /// 100 ms after the scan's reply.)
    void awaitAnnouncements(const QDeadlineTimer &deadline, const std::function<bool()> &isEnough);

signals:
    /// A service was added; it is not yet among services().
    void serviceChanged(std::shared_ptr<ConnmanService> service);
    void serviceStateChanged(std::shared_ptr<ConnmanService> service);
    void interfaceStateChanged(const QString &interfaceName, ConnmanManager::InterfaceState state);

private slots:
    void propertyChanged(const QString &name, const QDBusVariant &value);
    void servicesChanged(const ConnmanServiceInfoList &changed, const QList<QDBusObjectPath> &removed);

private:
    using Service = std::shared_ptr<ConnmanService>;

    void subscribe();
    void logFailedSubscription(QLatin1String signalName) const;
    void forgetServices();
    void serviceStateReported(const Service &service);
    void updateInterfaceStates();

    ConnmanRemote m_remote;
    QDBusConnection m_connection;
    ConnmanAnnouncements *m_announcements;
    /// Held, so that there is one subscription for the manager's whole life and not one for each burst of
    /// services.
    std::shared_ptr<ConnmanServiceSignals> m_serviceSignals;
    /// Shared with the services, which may outlive the manager.
    std::shared_ptr<InterfaceStates> m_interfaceStates;
    /// What was last told of them.
    QHash<QString, InterfaceState> m_toldInterfaceStates;
    InterfaceStates::Registry m_services;
};
