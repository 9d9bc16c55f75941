#include "Feed.h"

#include <cstdio>
#include <QTime>

void Feed::happened(const QString &source, const QString &text)
{
    const QString event = QStringLiteral("%1: %2").arg(source, text);
    m_print(QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz ")) + event);
    m_events << event;
    emit added();
}

void Feed::tell(const QString &text)
{
    m_print(text);
}

void Feed::printPlainly(const QString &line)
{
    std::fputs(line.toLocal8Bit().constData(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}
