#pragma once

#include "ConnmanService.h"
#include "ConnmanTypes.h"

#include <QDBusConnection>
#include <QHash>
#include <QList>
#include <QObject>

#include <chrono>
#include <memory>

class QDBusInterface;
class QDBusObjectPath;
class QDBusVariant;

/// Proxy of ConnMan's manager (net.connman.Manager): the registry of all services, kept in step with
/// "ServicesChanged", and one state per network interface derived from the services on it.
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

    /// ConnMan announces what a scan found some 100 ms after the scan's reply. Delivers the signals queued
    /// for this object, and nothing else, until a "ServicesChanged" has been handled or `limit` has passed.
    void awaitServicesChanged(std::chrono::milliseconds limit);

signals:
    /// A service was added; it is not yet among services().
    void serviceChanged(std::shared_ptr<ConnmanService> service);
    void serviceStateChanged(std::shared_ptr<ConnmanService> service);
    void interfaceStateChanged(const QString &interfaceName, ConnmanManager::InterfaceState state);

private slots:
    void propertyChanged(const QString &name, const QDBusVariant &value);
    void servicesChanged(const ConnmanServiceInfoList &changed, const QList<QDBusObjectPath> &removed);

private:
    void subscribe(const char *signalName, QLatin1String signature, const char *slot);
    void serviceStateReported(const std::shared_ptr<ConnmanService> &service);
    QHash<QString, InterfaceState> currentInterfaceStates() const;
    void updateInterfaceStates();

    QDBusInterface *m_interface;
    QDBusConnection m_connection;
    QHash<QString, InterfaceState> m_interfaceStates;
    QHash<QString, std::shared_ptr<ConnmanService>> m_services;
    bool m_servicesAnnounced = false;
};
