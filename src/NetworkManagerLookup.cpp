// Finding ConnMan's services for NetworkManager.

#include "NetworkManager.h"

#include "ConnmanTechnology.h"
#include "NetworkManagerConstants.h"

#include <QThread>

#include <algorithm>

namespace {

using namespace std::chrono_literals;

/// How long the announcement of what a scan found is waited for; ConnMan makes it some 100 ms after the
/// scan's reply.
constexpr auto AnnouncementLimit = 200ms;

} // namespace

QList<NetworkManager::Service> NetworkManager::services() const
{
    return m_manager ? m_manager->services() : QList<Service>();
}

bool NetworkManager::scanWifi(std::chrono::milliseconds pause) const
{
    if (!m_wifi) {
        return false;
    }
    const bool scanned = m_wifi->scan();
    QThread::msleep(static_cast<unsigned long>(pause.count()));
    if (scanned) {
        m_manager->awaitServicesChanged(AnnouncementLimit);
    }
    return scanned;
}

NetworkManager::Service
NetworkManager::findService(const std::function<bool(const ConnmanService &)> &matches,
                            bool scanIfMissing) const
{
    const auto find = [this, &matches]() -> Service {
        const QList<Service> all = services();
        const auto found = std::find_if(all.cbegin(), all.cend(),
                                        [&matches](const Service &service) { return matches(*service); });
        return found == all.cend() ? Service() : *found;
    };

    Service service = find();
    if (!service && scanIfMissing) {
        scanWifi();
        service = find();
    }
    return service;
}

NetworkManager::Service NetworkManager::findServiceByName(const QString &name, bool scanIfMissing) const
{
    return findService([&name](const ConnmanService &service) { return service.identifier() == name; },
                       scanIfMissing);
}

NetworkManager::Service NetworkManager::findWifiServiceByName(const QString &name, bool scanIfMissing) const
{
    const auto matches = [&name](const ConnmanService &service) {
        return service.identifier() == name && service.type() == NetworkManagerConstants::WifiType;
    };
    return findService(matches, scanIfMissing);
}

NetworkManager::Service NetworkManager::findServiceByInterface(const QString &interface,
                                                               bool scanIfMissing) const
{
    return findService(
        [&interface](const ConnmanService &service) { return service.interface() == interface; },
        scanIfMissing);
}

NetworkManager::Service NetworkManager::findOrReport(const QString &name) const
{
    return reportIfMissing(findServiceByName(name, true), name);
}

NetworkManager::Service NetworkManager::reportIfMissing(const Service &service, const QString &name) const
{
    if (!service) {
        qCCritical(logNetworkManager) << "No such network available:" << name;
        emit error(QStringLiteral("Unknown network: '%1'").arg(name));
    }
    return service;
}

bool NetworkManager::refuse(const char *logText, const QString &errorText) const
{
    qCCritical(logNetworkManager) << logText;
    emit error(errorText);
    return false;
}
