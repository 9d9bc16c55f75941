#include "ServiceLookup.h"

#include "ConnmanManager.h"
#include "ConnmanNames.h"
#include "ConnmanTechnology.h"

#include <QDeadlineTimer>
#include <QThread>

#include <algorithm>
#include <utility>

namespace {

using namespace std::chrono_literals;

/// How long after a scan's answer its announcement is waited for; ConnMan makes it some 100 ms after.
constexpr auto AnnouncementLimit = 200ms;

} // namespace

void ServiceLookup::attach(ConnmanManager *manager, ConnmanTechnology *wifi)
{
    m_manager = manager;
    m_wifi = wifi;
}

QList<ServiceLookup::Service> ServiceLookup::services() const
{
    return m_manager ? m_manager->services() : QList<Service>();
}

ServiceLookup::Service ServiceLookup::byName(const QString &identifier, IfMissing ifMissing)
{
    return find([&identifier](const ConnmanService &service) { return service.identifier() == identifier; },
                ifMissing);
}

ServiceLookup::Service ServiceLookup::wifiByName(const QString &identifier, IfMissing ifMissing)
{
    const auto matches = [&identifier](const ConnmanService &service) {
        return service.identifier() == identifier && service.type() == ConnmanNames::Wifi;
    };
    return find(matches, ifMissing);
}

ServiceLookup::Service ServiceLookup::byInterface(const QString &interface, IfMissing ifMissing)
{
    return find([&interface](const ConnmanService &service) { return service.interface() == interface; },
                ifMissing);
}

ServiceLookup::Service ServiceLookup::find(const Condition &matches) const
{
    const QList<Service> all = services();
    const auto found = std::find_if(all.cbegin(), all.cend(),
                                    [&matches](const Service &service) { return matches(*service); });
    return found == all.cend() ? Service() : *found;
}

ServiceLookup::Service ServiceLookup::find(const Condition &matches, IfMissing ifMissing)
{
    Service found = find(matches);
    if (found || ifMissing == IfMissing::GiveUp) {
        return found;
    }
    const auto look = [&] {
        found = find(matches);
        return found != nullptr;
    };
    if (const auto deadline = scanUntilAnswered()) {
        m_manager->awaitAnnouncements(*deadline, look);
    } else {
        look();
    }
    return found;
}

void ServiceLookup::scan()
{
    const auto deadline = scanUntilAnswered();
    if (!deadline) {
        return;
    }
    // What has been announced before counts as old: one more announcement is waited for.
    bool isFirstLook = true;
    m_manager->awaitAnnouncements(*deadline, [&isFirstLook] { return !std::exchange(isFirstLook, false); });
}

void ServiceLookup::scanAndSettle(std::chrono::milliseconds pause)
{
    if (!m_wifi) {
        return;
    }
    m_wifi->scan();
    QThread::msleep(static_cast<unsigned long>(pause.count()));
    m_manager->deliverAnnouncements();
}

/// Until when the announcement of the scan is to be waited for; nothing when there was no scan.
std::optional<QDeadlineTimer> ServiceLookup::scanUntilAnswered()
{
    if (!m_wifi) {
        return std::nullopt;
    }
    if (!m_wifi->scan()) {
        // What came while it was failing; ConnMan may have gone.
        m_manager->deliverAnnouncements();
        return std::nullopt;
    }
    return QDeadlineTimer(AnnouncementLimit);
}
