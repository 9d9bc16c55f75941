#include "Radio.h"

#include "Connector.h"
#include "ConnmanErrors.h"
#include "Discovery.h"
#include "ManagerState.h"
#include "Neighbourhood.h"
#include "ServiceList.h"
#include "Timings.h"
#include <QSet>
#include <QTimer>
#include <utility>

namespace simulator {

namespace {
const QString wifi = QStringLiteral("wifi");
const QString ethernet = QStringLiteral("ethernet");
const QString powered = QStringLiteral("Powered");
} // namespace

Radio::Radio(Parts parts, QObject *parent)
    : QObject(parent)
    , m_parts(parts)
{
}

void Radio::scan(const TechnologyPtr &technology, const Call &call)
{
    if (technology->type != wifi) {
        call.refuse(error::notSupported);
        return;
    }
    if (!technology->isPowered()) {
        call.refuse(error::noCarrier);
        return;
    }
    m_scanners.append(call); // who asks during a scan gets that scan's answer
    startScan();
}

// ConnMan answers first where the change takes time (Wi-Fi), and tells first where it does not (Ethernet).
void Radio::setPowered(const TechnologyPtr &technology, bool on, const Call &call)
{
    if (technology->isPowered() == on) {
        call.refuse(on ? error::alreadyEnabled : error::alreadyDisabled);
        return;
    }
    const auto change = [this, technology, on] { on ? switchOn(technology) : switchOff(technology); };
    if (technology->type == ethernet) {
        change();
        call.reply();
        return;
    }
    if (!on) {
        removeServices(technology->type);
    }
    QTimer::singleShot(m_parts.timings.power, this, [this, change, call, life = m_life] {
        if (life == m_life) {
            call.reply();
            change();
        }
    });
}

void Radio::switchOnAtStart(const TechnologyPtr &technology)
{
    const int wait = technology->type == ethernet ? 0 : m_parts.timings.power;
    QTimer::singleShot(wait, this, [this, technology, life = m_life] {
        if (life == m_life && !technology->isPowered()) {
            switchOn(technology);
        }
    });
}

void Radio::lookAround()
{
    QSet<QString> present;
    if (m_parts.technologies.isPowered(wifi)) {
        for (const AccessPoint &accessPoint : m_parts.neighbourhood.accessPoints()) {
            if (accessPoint.isInReach) {
                present.insert(m_parts.discovery.scanned(accessPoint)->identifier);
            }
        }
    }
    const QVector<ServicePtr> services = m_parts.services.all();
    for (const ServicePtr &service : services) {
        const bool wasFound = !service->ssid.isEmpty() && !present.contains(service->identifier);
        const bool isGone = wasFound && m_parts.neighbourhood.find(service->ssid) == nullptr;
        if (isGone) {
            remove(service);
        }
    }
    m_parts.services.sort();
    m_parts.connector.autoConnect();
}

void Radio::loseNetwork(const QString &identifier)
{
    if (const ServicePtr service = m_parts.services.find(identifier)) {
        remove(service);
    }
}

void Radio::cableChanged()
{
    const ServicePtr known = m_parts.services.find(cableIdentifier());
    const bool isThere = m_parts.neighbourhood.cable.isPlugged && m_parts.technologies.isPowered(ethernet);
    if (known != nullptr && !isThere) {
        remove(known);
    } else if (known == nullptr && isThere) {
        m_parts.discovery.cable();
        m_parts.connector.autoConnect();
    }
}

void Radio::abandon()
{
    ++m_life;
    m_scanners.clear();
    m_isScanning = false;
}

void Radio::startScan()
{
    if (m_isScanning) {
        return;
    }
    m_isScanning = true;
    QTimer::singleShot(m_parts.timings.scan, this, [this, life = m_life] {
        if (life == m_life) {
            completeScan();
        }
    });
}

void Radio::completeScan()
{
    m_isScanning = false;
    lookAround();
    for (const Call &call : std::exchange(m_scanners, {})) {
        call.reply();
    }
}

void Radio::switchOn(const TechnologyPtr &technology)
{
    m_parts.technologies.set(*technology, powered, true);
    if (technology->type == ethernet) {
        cableChanged();
    } else {
        startScan();
    }
}

void Radio::switchOff(const TechnologyPtr &technology)
{
    removeServices(technology->type);
    m_parts.technologies.set(*technology, powered, false);
}

void Radio::removeServices(const QString &type)
{
    const QVector<ServicePtr> services = m_parts.services.all();
    for (const ServicePtr &service : services) {
        if (service->type() == type) {
            remove(service);
        }
    }
}

void Radio::remove(const ServicePtr &service)
{
    service->ignored = true;
    m_parts.connector.disconnectService(service);
    m_parts.discovery.remove(service);
    m_parts.manager.update();
}

} // namespace simulator
