#include "ConnmanManager.h"

#include "ConnmanAnnouncements.h"
#include "ConnmanNames.h"
#include "ConnmanServiceSignals.h"
#include "Latin1.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusReply>
#include <QDBusVariant>
#include <QLoggingCategory>
#include <QSet>
#include <QTimer>

#include <algorithm>
#include <utility>

Q_LOGGING_CATEGORY(logConnmanManager, "ConnmanManager", QtCriticalMsg)
Q_LOGGING_CATEGORY(logConnmanManagerServices, "ConnmanManager.services", QtCriticalMsg)
Q_LOGGING_CATEGORY(logConnmanManagerProperties, "ConnmanManager.properties", QtCriticalMsg)
Q_LOGGING_CATEGORY(logConnmanManagerTechnology, "ConnmanManager.technology", QtCriticalMsg)

namespace {

using namespace std::chrono_literals;

constexpr QLatin1String GetServices = latin1("GetServices");
constexpr QLatin1String GetTechnologies = latin1("GetTechnologies");
constexpr QLatin1String RegisterAgent = latin1("RegisterAgent");

/// How long a service's new state must settle before the interfaces' states follow it.
constexpr auto StateSettleTime = 2000ms;

} // namespace

ConnmanManager::ConnmanManager(const QDBusConnection &connection, QObject *parent)
    : QObject(parent)
    , m_remote(connection, ConnmanNames::ManagerObject, ConnmanNames::ManagerInterface)
    , m_connection(connection)
    , m_announcements(new ConnmanAnnouncements(connection, this))
    , m_serviceSignals(ConnmanServiceSignals::of(connection))
    , m_interfaceStates(std::make_shared<InterfaceStates>())
{
    qRegisterMetaType<InterfaceState>("InterfaceState");
    qCDebug(logConnmanManager) << "ConnmanManager()";
    subscribe();
    QTimer::singleShot(0, Qt::PreciseTimer, this, &ConnmanManager::updateServices);
}

ConnmanManager::~ConnmanManager() = default;

QString ConnmanManager::serviceName() const
{
    return ConnmanNames::Service;
}

QString ConnmanManager::serviceObject() const
{
    return ConnmanNames::ManagerObject;
}

QString ConnmanManager::interfaceName() const
{
    return ConnmanNames::ManagerInterface;
}

void ConnmanManager::subscribe()
{
    if (!m_remote.subscribe(ConnmanNames::PropertyChanged, ConnmanNames::PropertyChangedSignature, this,
                            SLOT(propertyChanged(QString, QDBusVariant)))) {
        logFailedSubscription(ConnmanNames::PropertyChanged);
    }
    connect(m_announcements, &ConnmanAnnouncements::connmanGone, this, &ConnmanManager::forgetServices);
    connect(m_announcements, &ConnmanAnnouncements::servicesChanged, this, &ConnmanManager::servicesChanged);
    if (!m_announcements->subscribe()) {
        logFailedSubscription(ConnmanNames::ServicesChanged);
    }
}

void ConnmanManager::logFailedSubscription(QLatin1String signalName) const
{
    qCCritical(logConnmanManager) << "Unable to connect" << signalName.data() << "signal for" << serviceName()
                                  << serviceObject() << interfaceName();
}

bool ConnmanManager::updateServices()
{
    registerConnmanTypes();
    const QDBusReply<ConnmanServiceInfoList> reply = m_remote.call(GetServices);
    if (!reply.isValid()) {
        qCCritical(logConnmanManagerServices)
            << "Call to" << GetServices.data() << "failed:" << reply.error().message();
        return false;
    }
    const ConnmanServiceInfoList listed = reply.value();
    for (const ConnmanServiceInfo &info : listed) {
        addService(info.path);
    }
    updateInterfaceStates();
    return true;
}

bool ConnmanManager::addService(const QDBusObjectPath &path)
{
    if (m_services.contains(path.path())) {
        return false;
    }
    qCDebug(logConnmanManagerServices) << "Adding service" << path.path();

    const auto service = std::make_shared<ConnmanService>(m_connection, path, nullptr);
    service->setInterfaceListener(
        [states = m_interfaceStates](const QString &moved) { states->touch(moved); });
    // A weak reference: with a strong one a service that ConnMan has removed would live, and follow its path,
    // for ever.
    connect(service.get(), &ConnmanService::stateChanged, this,
            [this, reporter = std::weak_ptr<ConnmanService>(service)] {
                if (const Service alive = reporter.lock()) {
                    serviceStateReported(alive);
                }
            });
    service->serviceChanged();
    emit serviceChanged(service);
    m_services.insert(path.path(), service);
    m_interfaceStates->touch(path.path());
    return true;
}

void ConnmanManager::serviceStateReported(const Service &service)
{
    m_interfaceStates->touch(service->path());
    // Deliberately the state being left, not the new one: leaving online schedules nothing.
    if (service->previousState() != ConnmanService::State::Online) {
        // One whose path has a new service by now hears the state of that: held for each change, it would
        // live as long as they keep coming, and so would every one before it.
        const bool isReplaced = m_services.value(service->path(), service) != service;
        const Service held = isReplaced ? nullptr : service;
        QTimer::singleShot(StateSettleTime, Qt::CoarseTimer, this, [this, held] { updateInterfaceStates(); });
    }
    emit serviceStateChanged(service);
}

void ConnmanManager::remService(const QDBusObjectPath &path)
{
    const auto found = m_services.find(path.path());
    if (found == m_services.end()) {
        qCWarning(logConnmanManagerServices) << "Trying to remove non-existant service" << path.path();
        return;
    }
    qCDebug(logConnmanManagerServices) << "Removing service" << path.path();
    m_services.erase(found);
    m_interfaceStates->touch(path.path());
}

void ConnmanManager::forgetServices()
{
    const QStringList paths = m_services.keys();
    for (const QString &path : paths) {
        remService(QDBusObjectPath(path));
    }
    updateInterfaceStates();
}

QList<std::shared_ptr<ConnmanService>> ConnmanManager::services() const
{
    return m_services.values();
}

void ConnmanManager::servicesChanged(const ConnmanServiceInfoList &changed,
                                     const QList<QDBusObjectPath> &removed)
{
    for (const ConnmanServiceInfo &info : changed) {
        // A copy: what the refresh emits may change the registry.
        const Service known = m_services.value(info.path.path());
        if (known) {
            known->serviceChanged();
        } else {
            addService(info.path);
        }
    }
    for (const QDBusObjectPath &path : removed) {
        remService(path);
    }
    updateInterfaceStates();
}

void ConnmanManager::deliverAnnouncements()
{
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    m_announcements->deliver();
}

void ConnmanManager::awaitAnnouncements(const QDeadlineTimer &deadline, const std::function<bool()> &isEnough)
{
    m_announcements->await(deadline, isEnough);
}

bool ConnmanManager::hasTechnology(const QString &name)
{
    const QDBusReply<ConnmanServiceInfoList> reply = m_remote.call(GetTechnologies);
    if (!reply.isValid()) {
        qCCritical(logConnmanManagerTechnology)
            << "Call to" << GetTechnologies.data() << "failed:" << reply.error().message();
        return false;
    }
    const ConnmanServiceInfoList technologies = reply.value();
    return std::any_of(
        technologies.cbegin(), technologies.cend(),
        [&name](const ConnmanServiceInfo &technology) { return technology.path.path().contains(name); });
}

bool ConnmanManager::registerAgent(const QDBusObjectPath &path)
{
    const QDBusReply<void> reply = m_remote.call(RegisterAgent, {QVariant::fromValue(path)});
    if (reply.isValid()) {
        return true;
    }
    qCCritical(logConnmanManager).nospace().noquote()
        << "Unable to call " << RegisterAgent.data() << "(\"" << path.path() << "\") on \"" << serviceName()
        << "\": " << reply.error().message();
    return false;
}

void ConnmanManager::updateInterfaceStates()
{
    m_interfaceStates->update(m_services);
    const QHash<QString, InterfaceState> now = m_interfaceStates->highest();
    const QHash<QString, InterfaceState> before = std::exchange(m_toldInterfaceStates, now);

    QSet<QString> interfaces(before.keyBegin(), before.keyEnd());
    interfaces.unite(QSet<QString>(now.keyBegin(), now.keyEnd()));
    for (const QString &interface : qAsConst(interfaces)) {
        const bool changed =
            !now.contains(interface) || !before.contains(interface) || before[interface] != now[interface];
        if (changed) {
            emit interfaceStateChanged(interface, now.value(interface, InterfaceState::Unknown));
        }
    }
}

void ConnmanManager::propertyChanged(const QString &name, const QDBusVariant &value)
{
    qCDebug(logConnmanManagerProperties) << "PropertyChanged(" << name << ", " << value.variant() << ")";
}
