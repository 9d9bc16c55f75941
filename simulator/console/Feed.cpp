#include "Feed.h"

#include <QTime>

void Feed::happened(const QString &source, const QString &text)
{
    const QString event = QStringLiteral("%1: %2").arg(source, text);
    print(QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz ")) + event);
    m_events << event;
    emit added();
}

void Feed::tell(const QString &text)
{
    print(text);
}

void Feed::print(const QString &line) const
{
    if (!m_isSilent) {
        m_print(line);
    }
}
