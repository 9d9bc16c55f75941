#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

/// Counts the signals of the bus that it is connected to.
class SignalCounter : public QObject
{
    Q_OBJECT
public:
    int counted() const { return m_counted; }

public slots:
    void count() { ++m_counted; }

private:
    int m_counted = 0;
};

/// A connection to the system bus that belongs to a user without privileges.
class BusUser
{
public:
    /// Makes the user when there is none of that name yet. `group` is one besides its own, or empty.
    BusUser(const QString &name, const QString &group);
    ~BusUser();
    Q_DISABLE_COPY_MOVE(BusUser)

    bool isConnected() const { return m_connection.isConnected(); }
    QDBusConnection &connection() { return m_connection; }
    /// The name of the error that a call is answered with, or an empty text.
    QString errorOf(const QDBusMessage &call);

private:
    static QDBusConnection connectAs(const QString &name);

    QString m_name;
    QDBusConnection m_connection;
};
