#include "Tour.h"

#include "Console.h"
#include "Feed.h"
#include <algorithm>
#include <chrono>
#include <utility>

namespace {
// Slower than anything on a busy machine, sooner than anybody's patience.
constexpr std::chrono::seconds patience(60);
} // namespace

Tour::Tour(QVector<TourStep> steps, Console &console, Feed &feed, QObject *parent)
    : QObject(parent)
    , m_steps(std::move(steps))
    , m_console(console)
    , m_feed(feed)
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this,
            [this] { giveUp(QStringLiteral("not seen: ") + unseen().join(QStringLiteral("; "))); });
}

void Tour::start()
{
    // Queued: events are also reported from within a command, and the next step must not start there.
    connect(&m_feed, &Feed::added, this, &Tour::check, Qt::QueuedConnection);
    begin(0);
}

void Tour::begin(int step)
{
    m_step = step;
    const TourStep &current = m_steps.at(step);
    m_feed.forget();
    m_feed.tell(
        QStringLiteral("\nStep %1 of %2. %3").arg(step + 1).arg(m_steps.size()).arg(current.narration));
    m_patience.start();
    for (const QString &command : current.commands) {
        m_feed.tell(QStringLiteral("> ") + command);
        if (!m_console.execute(command)) {
            giveUp(QStringLiteral("\"%1\" cannot be done").arg(command));
            return;
        }
    }
}

void Tour::check()
{
    if (!m_patience.isActive() || !unseen().isEmpty()) {
        return;
    }
    if (m_step + 1 < m_steps.size()) {
        begin(m_step + 1);
        return;
    }
    m_patience.stop();
    m_succeeded = true;
    m_feed.tell(QStringLiteral("\nThe tour is over: everything came as announced."));
    emit finished();
}

void Tour::giveUp(const QString &reason)
{
    m_patience.stop();
    m_feed.tell(QStringLiteral("\nThe tour ends here, %1.").arg(reason));
    emit finished();
}

QStringList Tour::unseen() const
{
    const QStringList events = m_feed.events();
    QStringList missing;
    for (const QString &expected : m_steps.at(m_step).expected) {
        const bool seen = std::any_of(events.cbegin(), events.cend(),
                                      [&](const QString &event) { return isExpected(event, expected); });
        if (!seen) {
            missing << expected;
        }
    }
    return missing;
}
