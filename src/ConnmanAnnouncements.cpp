#include "ConnmanAnnouncements.h"

#include "AnnouncementBell.h"
#include "ConnmanNames.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <utility>

ConnmanAnnouncements::ConnmanAnnouncements(QDBusConnection connection, QObject *parent)
    : QObject(parent)
    , m_connection(std::move(connection))
{
    m_connection.connect(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                         QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                         {ConnmanNames::Service}, QStringLiteral("sss"), this,
                         SLOT(receiveOwner(QString, QString, QString)));
}

bool ConnmanAnnouncements::subscribe()
{
    return m_connection.connect(ConnmanNames::Service, ConnmanNames::ManagerObject,
                                ConnmanNames::ManagerInterface, ConnmanNames::ServicesChanged,
                                ConnmanNames::ServicesChangedSignature, this,
                                SLOT(receiveServices(ConnmanServiceInfoList, QList<QDBusObjectPath>)));
}

void ConnmanAnnouncements::deliver()
{
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

void ConnmanAnnouncements::await(const QDeadlineTimer &deadline, const std::function<bool()> &isEnough)
{
    AnnouncementBell bell(m_connection);
    do {
        bell.arm();
        deliver();
    } while (!isEnough() && bell.wait(deadline));
}

void ConnmanAnnouncements::receiveServices(const ConnmanServiceInfoList &changed,
                                           const QList<QDBusObjectPath> &removed)
{
    emit servicesChanged(changed, removed);
}

void ConnmanAnnouncements::receiveOwner(const QString & /*name*/, const QString &oldOwner,
                                        const QString & /*newOwner*/)
{
    if (!oldOwner.isEmpty()) {
        emit connmanGone();
    }
}
