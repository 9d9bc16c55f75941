#pragma once

#include "Command.h"
#include "DaemonCalls.h"
#include <QDBusConnection>
#include <QObject>
#include <QVector>

class Feed;
class NetworkNames;

/// The commands that are calls to the daemon's own interface. Calls do not wait: what happens meanwhile is
/// shown as it happens, and the reply when it comes.
class DaemonCommands : public QObject
{
    Q_OBJECT
public:
    DaemonCommands(QDBusConnection connection, NetworkNames &names, Feed &feed, QObject *parent = nullptr);

    QVector<Command> commands();
    /// Whether a reply is still to come.
    bool isBusy() const { return m_openCalls > 0; }

signals:
    /// No reply is to come any more.
    void idle();

private:
    void perform(const DaemonCall &call, QStringList words);
    void send(const QString &method, const QVariantList &arguments);
    void showReply(const QString &method, const QVariant &value);
    void showNetworks(const QVariantMap &networks);

    QDBusConnection m_connection;
    NetworkNames &m_names;
    Feed &m_feed;
    int m_openCalls = 0;
};
