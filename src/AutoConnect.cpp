#include "AutoConnect.h"

#include "ConnmanManager.h"
#include "ConnmanNames.h"
#include "ConnmanService.h"
#include "NetworkManagerLog.h"
#include "ServiceLookup.h"

#include <QTimer>

AutoConnect::AutoConnect(const ServiceLookup &lookup, QObject *parent)
    : QObject(parent)
    , m_lookup(lookup)
{
}

void AutoConnect::attach(const ConnmanManager *manager)
{
    connect(manager, &ConnmanManager::serviceChanged, this, &AutoConnect::serviceAdded);
}

void AutoConnect::switchOff()
{
    ++m_users;
    set(false);
}

void AutoConnect::switchOn()
{
    --m_users;
    set(true);
}

void AutoConnect::set(bool on)
{
    const QList<Service> all = m_lookup.services();
    for (const Service &service : all) {
        const QString type = service->type();
        if (type == ConnmanNames::Wifi) {
            set(service, on);
        } else {
            qCDebug(logNetworkManager) << "Skipping network of type" << type;
        }
    }
}

void AutoConnect::set(const Service &service, bool on)
{
    if (!service->setAutoConnect(on)) {
        return;
    }
    if (on) {
        m_switchedOff.remove(service->identifier());
    } else {
        m_switchedOff.insert(service->identifier());
    }
}

// In the midst of an announcement of ConnMan's: what there is to say to it waits until that has been heard.
void AutoConnect::serviceAdded(const Service &service)
{
    QTimer::singleShot(0, this, [this, service] {
        if (m_users > 0 || !m_switchedOff.contains(service->identifier())) {
            return;
        }
        if (service->isFavorite()) {
            set(service, true);
        } else {
            m_switchedOff.remove(service->identifier()); // ConnMan has forgotten it meanwhile
        }
    });
}
