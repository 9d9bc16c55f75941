#pragma once

#include "DaemonInterface.h"
#include "FakeDevices.h"
#include <QDBusServiceWatcher>
#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QTimer>

class Device;
class Feed;

/// Tells the feed what the device and the world around it do.
class Observer : public QObject
{
    Q_OBJECT
public:
    Observer(Device &device, Feed &feed, QObject *parent = nullptr);

private:
    void watchSpeech();
    void watchPresence();
    void reportSignal(const QString &name, const QVariantList &arguments);
    void watchDaemonLog();
    void watchLeds();
    void watchChildPrograms();
    void reportLeds();
    void reportChildPrograms();
    void reportLogLine(const QString &line);

    Device &m_device;
    Feed &m_feed;
    DaemonSignals m_signals;
    QDBusServiceWatcher m_presence;
    QFileSystemWatcher m_ledFiles;
    QTimer m_ledsSettle;
    QHash<QString, test_support::LedPattern> m_shown;
    QFileSystemWatcher m_programLog;
    int m_programsReported = 0;
};
