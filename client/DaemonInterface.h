#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QObject>
#include <QVariantList>

/// The daemon's bus name, which is its interface's name too.
QString daemonName();

/// Sends a call to the daemon, which may take as long as it takes.
QDBusPendingCall callDaemon(const QDBusConnection &connection, const QString &method,
                            const QVariantList &arguments = {});

/// What the daemon has answered.
struct DaemonAnswer
{
    /// In plain Qt types, without raw D-Bus arguments.
    QVariant value;
    /// Why there is no answer, for people; empty if there is one.
    QString problem;
};
DaemonAnswer daemonAnswer(const QDBusMessage &reply);

/// Tells what the daemon tells everybody.
class DaemonSignals : public QObject
{
    Q_OBJECT
public:
    explicit DaemonSignals(const QDBusConnection &connection, QObject *parent = nullptr);

signals:
    /// One of the interface's signals.
    void received(const QString &name, const QVariantList &arguments);

private slots:
    void relay(const QDBusMessage &message);
};
