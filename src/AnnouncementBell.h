#pragma once

#include <QDBusConnection>
#include <QSemaphore>
#include <QThread>

#include <memory>

class QDeadlineTimer;

/// Wakes the main thread when ConnMan's "ServicesChanged" comes, while that thread stands still and runs no
/// event loop that could tell. It listens on a small thread of its own, for as long as it lives.
class AnnouncementBell
{
public:
    explicit AnnouncementBell(QDBusConnection connection);
    ~AnnouncementBell();
    AnnouncementBell(const AnnouncementBell &) = delete;
    AnnouncementBell &operator=(const AnnouncementBell &) = delete;

    /// When it returns, whatever has rung before is in the queue of its receiver on the main thread too, and
    /// what comes later rings.
    void arm();
    /// Blocks until it rings; false when it did not in time.
    bool wait(const QDeadlineTimer &deadline);

private:
    class Listener;

    QDBusConnection m_connection;
    QSemaphore m_rung;
    QThread m_thread;
    std::unique_ptr<Listener> m_listener;
};
