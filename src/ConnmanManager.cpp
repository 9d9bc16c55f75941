#include "ConnmanManager.h"

#include "AllServicesSubscription.h"
#include "ConnmanNames.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QLoggingCategory>
#include <QSet>
#include <QThread>
#include <QTimer>

#include <algorithm>

Q_LOGGING_CATEGORY(logConnmanManager, "ConnmanManager", QtCriticalMsg)
Q_LOGGING_CATEGORY(logConnmanManagerServices, "ConnmanManager.services", QtCriticalMsg)
Q_LOGGING_CATEGORY(logConnmanManagerProperties, "ConnmanManager.properties", QtCriticalMsg)
Q_LOGGING_CATEGORY(logConnmanManagerTechnology, "ConnmanManager.technology", QtCriticalMsg)

namespace {

using namespace std::chrono_literals;

constexpr const char *GetServices = "GetServices";
constexpr const char *GetTechnologies = "GetTechnologies";
constexpr const char *RegisterAgent = "RegisterAgent";
constexpr const char *ServicesChanged = "ServicesChanged";
const QLatin1String ServicesChangedSignature("a(oa{sv})ao");

/// How long a service's new state must settle before the interfaces' states follow it.
constexpr auto StateSettleTime = 2000ms;
/// How often the announcement of a scan is looked for.
constexpr unsigned long AnnouncementPollMs = 5;

} // namespace

ConnmanManager::ConnmanManager(const QDBusConnection &connection, QObject *parent)
    : QObject(parent)
    , m_interface(new QDBusInterface(serviceName(), serviceObject(), interfaceName(), connection, this))
    , m_connection(connection)
{
    qRegisterMetaType<InterfaceState>("InterfaceState");
    qCDebug(logConnmanManager) << "ConnmanManager()";
    new AllServicesSubscription(connection, this);
    subscribe(ConnmanNames::PropertyChanged, ConnmanNames::PropertyChangedSignature,
              SLOT(propertyChanged(QString, QDBusVariant)));
    subscribe(ServicesChanged, ServicesChangedSignature,
              SLOT(servicesChanged(ConnmanServiceInfoList, QList<QDBusObjectPath>)));
    QTimer::singleShot(0, Qt::PreciseTimer, this, &ConnmanManager::updateServices);
}

ConnmanManager::~ConnmanManager() = default;

QString ConnmanManager::serviceName() const
{
    return ConnmanNames::service();
}

QString ConnmanManager::serviceObject() const
{
    return ConnmanNames::managerObject();
}

QString ConnmanManager::interfaceName() const
{
    return ConnmanNames::managerInterface();
}

void ConnmanManager::subscribe(const char *signalName, QLatin1String signature, const char *slot)
{
    if (!m_connection.connect(serviceName(), serviceObject(), interfaceName(), QLatin1String(signalName),
                              signature, this, slot)) {
        qCCritical(logConnmanManager) << "Unable to connect" << signalName << "signal for" << serviceName()
                                      << serviceObject() << interfaceName();
    }
}

bool ConnmanManager::updateServices()
{
    registerConnmanTypes();
    const QDBusReply<ConnmanServiceInfoList> reply = m_interface->call(QLatin1String(GetServices));
    if (!reply.isValid()) {
        qCCritical(logConnmanManagerServices)
            << "Call to" << GetServices << "failed:" << reply.error().message();
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
    connect(service.get(), &ConnmanService::stateChanged, this,
            [this, service] { serviceStateReported(service); });
    service->serviceChanged();
    emit serviceChanged(service);
    m_services.insert(path.path(), service);
    return true;
}

void ConnmanManager::serviceStateReported(const std::shared_ptr<ConnmanService> &service)
{
    // Deliberately the state being left, not the new one: leaving online schedules nothing.
    if (service->previousState() != ConnmanService::State::Online) {
        QTimer::singleShot(StateSettleTime, Qt::CoarseTimer, this,
                           [this, service] { updateInterfaceStates(); });
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
        const std::shared_ptr<ConnmanService> known = m_services.value(info.path.path());
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
    m_servicesAnnounced = true;
}

void ConnmanManager::awaitServicesChanged(std::chrono::milliseconds limit)
{
    m_servicesAnnounced = false;
    const QDeadlineTimer deadline(limit);
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    while (!m_servicesAnnounced && !deadline.hasExpired()) {
        QThread::msleep(AnnouncementPollMs);
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
}

bool ConnmanManager::hasTechnology(const QString &name)
{
    const QDBusReply<ConnmanServiceInfoList> reply = m_interface->call(QLatin1String(GetTechnologies));
    if (!reply.isValid()) {
        qCCritical(logConnmanManagerTechnology)
            << "Call to" << GetTechnologies << "failed:" << reply.error().message();
        return false;
    }
    const ConnmanServiceInfoList technologies = reply.value();
    return std::any_of(
        technologies.cbegin(), technologies.cend(),
        [&name](const ConnmanServiceInfo &technology) { return technology.path.path().contains(name); });
}

bool ConnmanManager::registerAgent(const QDBusObjectPath &path)
{
    const QDBusReply<void> reply = m_interface->call(QLatin1String(RegisterAgent), QVariant::fromValue(path));
    if (reply.isValid()) {
        return true;
    }
    qCCritical(logConnmanManager).nospace().noquote()
        << "Unable to call " << RegisterAgent << "(\"" << path.path() << "\") on \"" << serviceName()
        << "\": " << reply.error().message();
    return false;
}

QHash<QString, ConnmanManager::InterfaceState> ConnmanManager::currentInterfaceStates() const
{
    QHash<QString, InterfaceState> highest;
    for (const auto &service : m_services) {
        const QString interface = service->interface();
        if (interface.isEmpty()) {
            continue;
        }
        InterfaceState &state = highest[interface];
        state = std::max(state, service->state());
    }
    return highest;
}

void ConnmanManager::updateInterfaceStates()
{
    const QHash<QString, InterfaceState> before = m_interfaceStates;
    const QHash<QString, InterfaceState> now = currentInterfaceStates();
    m_interfaceStates = now;

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
