#include "Tour.h"

#include "Console.h"
#include "Feed.h"
#include "TourSteps.h"
#include <algorithm>
#include <chrono>

namespace {
// Slower than anything on a busy machine, sooner than anybody's patience.
constexpr std::chrono::seconds patience(60);

bool matches(const QString &event, const QString &expected)
{
    const QString gap = QStringLiteral("...");
    return event.startsWith(expected.section(gap, 0, 0)) && event.contains(expected.section(gap, 1));
}
} // namespace

Tour::Tour(Console &console, Feed &feed, QObject *parent)
    : QObject(parent)
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
    const TourStep &current = tourSteps().at(step);
    m_feed.forget();
    m_feed.tell(
        QStringLiteral("\nStep %1 of %2. %3").arg(step + 1).arg(tourSteps().size()).arg(current.narration));
    m_patience.start();
    for (const QString &command : current.commands) {
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
    if (m_step + 1 < tourSteps().size()) {
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
    for (const QString &expected : tourSteps().at(m_step).expected) {
        const bool seen = std::any_of(events.cbegin(), events.cend(),
                                      [&](const QString &event) { return matches(event, expected); });
        if (!seen) {
            missing << expected;
        }
    }
    return missing;
}
