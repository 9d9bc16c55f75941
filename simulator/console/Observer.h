#pragma once

#include "FakeDevices.h"
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QTimer>

class Device;
class Feed;

/// Tells the feed what the device and its surroundings do.
class Observer : public QObject
{
    Q_OBJECT
public:
    Observer(Device &device, Feed &feed, QObject *parent = nullptr);

private slots:
    void onDaemonSignal(const QDBusMessage &message);

private:
    void watchSpeech();
    void watchPresence();
    void watchDaemonSignals();
    void watchDaemonLog();
    void watchLeds();
    void watchChildPrograms();
    void reportLeds();
    void reportChildPrograms();
    void reportLogLine(const QString &line);

    Device &m_device;
    Feed &m_feed;
    QDBusServiceWatcher m_presence;
    QFileSystemWatcher m_ledFiles;
    QTimer m_ledsSettle;
    QHash<QString, test_support::LedPattern> m_shown;
    QFileSystemWatcher m_programLog;
    int m_programsReported = 0;
};
