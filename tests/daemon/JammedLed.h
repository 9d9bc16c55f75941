#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

/// A LED whose next change waits in the middle: in the place of its file is a pipe that is full.
class JammedLed : public QObject
{
    Q_OBJECT
public:
    explicit JammedLed(const QString &brightnessFile)
        : m_file(brightnessFile.toUtf8())
        , m_watch(inotify_init1(IN_CLOEXEC))
        , m_opened(m_watch, QSocketNotifier::Read)
    {
        unlink(m_file.constData());
        mkfifo(m_file.constData(), 0600);
        m_pipe = open(m_file.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        const QByteArray filling(fcntl(m_pipe, F_SETPIPE_SZ, 1), '0');
        m_isJammed =
            write(m_pipe, filling.constData(), static_cast<size_t>(filling.size())) == filling.size();
        inotify_add_watch(m_watch, m_file.constData(), IN_OPEN | IN_ONESHOT);
        connect(&m_opened, &QSocketNotifier::activated, this, [this] {
            m_opened.setEnabled(false);
            emit isWaitedFor();
        });
    }
    ~JammedLed() override
    {
        close(m_pipe);
        close(m_watch);
    }

    bool isJammed() const { return m_isJammed; }
    void letThrough() const
    {
        char byte = 0;
        while (read(m_pipe, &byte, 1) == 1) {
        }
    }

signals:
    void isWaitedFor();

private:
    QByteArray m_file;
    int m_watch;
    QSocketNotifier m_opened;
    int m_pipe = -1;
    bool m_isJammed = false;
};
