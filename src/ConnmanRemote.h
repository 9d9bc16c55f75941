#pragma once

#include <QDBusConnection>
#include <QLatin1String>
#include <QString>
#include <QVariantList>

#include <chrono>

class QDBusMessage;
class QDBusPendingCall;

/// One object of ConnMan on the bus, as its caller sees it: where it is, and how long it may take to answer.
///
/// It takes the place of a QDBusInterface, which would introspect ConnMan, follow the owner of its name and
/// cost 2 KiB for each network.
class ConnmanRemote
{
public:
    /// Qt's own time-out of a call, 25 s.
    static constexpr std::chrono::milliseconds UsualTimeout{-1};

    ConnmanRemote(QDBusConnection connection, QString path, QLatin1String interface,
                  std::chrono::milliseconds timeout = UsualTimeout);

    QString path() const { return m_path; }
    QLatin1String interface() const { return m_interface; }

    /// Blocks until ConnMan has answered; an error reply when it did not in time.
    QDBusMessage call(QLatin1String method, const QVariantList &arguments = {}) const;
    /// The answer, or the error of the time-out, comes later.
    QDBusPendingCall asyncCall(QLatin1String method) const;

    /// Receives a signal of the object; false when the connection is none.
    bool subscribe(QLatin1String signal, QLatin1String signature, QObject *receiver, const char *slot);

private:
    QDBusMessage message(QLatin1String method) const;

    QDBusConnection m_connection;
    QString m_path;
    QLatin1String m_interface;
    int m_timeoutMs;
};
