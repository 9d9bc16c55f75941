#include "AnnouncementBell.h"

#include "ConnmanNames.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <limits>
#include <utility>

class AnnouncementBell::Listener : public QObject
{
    Q_OBJECT

public:
    explicit Listener(QSemaphore &rung)
        : m_rung(&rung)
    {
    }

public slots:
    void ring() { m_rung->release(); }

private:
    QSemaphore *m_rung;
};

AnnouncementBell::AnnouncementBell(QDBusConnection connection)
    : m_connection(std::move(connection))
    , m_listener(std::make_unique<Listener>(m_rung))
{
    m_listener->moveToThread(&m_thread);
    m_thread.start();
}

AnnouncementBell::~AnnouncementBell()
{
    m_thread.quit();
    m_thread.wait();
}

// Qt hands one signal to all its receivers under the lock that a subscription, made already or not, has to
// take too.
void AnnouncementBell::arm()
{
    m_connection.connect(ConnmanNames::Service, ConnmanNames::ManagerObject, ConnmanNames::ManagerInterface,
                         ConnmanNames::ServicesChanged, ConnmanNames::ServicesChangedSignature,
                         m_listener.get(), SLOT(ring()));
}

bool AnnouncementBell::wait(const QDeadlineTimer &deadline)
{
    const qint64 remaining = std::clamp<qint64>(deadline.remainingTime(), 0, std::numeric_limits<int>::max());
    return m_rung.tryAcquire(1, static_cast<int>(remaining));
}

#include "AnnouncementBell.moc"
