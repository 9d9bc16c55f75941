#pragma once

#include "Command.h"
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantList>
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

private:
    struct Call;
    static const QVector<Call> &table();

    void perform(const Call &call, const QStringList &words);
    bool convert(const Call &call, const QStringList &words, QVariantList &arguments);
    void send(const Call &call, const QVariantList &arguments);
    void showReply(const Call &call, const QDBusMessage &reply);
    void showNetworks(const QVariantMap &networks);

    QDBusConnection m_connection;
    NetworkNames &m_names;
    Feed &m_feed;
};
