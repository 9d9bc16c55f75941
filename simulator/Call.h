#pragma once

#include <QDBusMessage>
#include <QString>
#include <QVariantList>

namespace simulator {

/// A D-Bus error: its name and its text.
struct ErrorReply
{
    QString name;
    QString message;
};

/// A method call that has arrived on one of the simulated services' bus connections, and the way to answer
/// it: at once or later. An answer after that connection has gone goes nowhere, as after a crash.
class Call
{
public:
    Call(const QDBusMessage &message, QString connectionName);

    QString path() const { return m_message.path(); }
    QString interface() const { return m_message.interface(); }
    QString member() const { return m_message.member(); }
    QString sender() const { return m_message.service(); }
    QString signature() const { return m_message.signature(); }
    QVariantList arguments() const { return m_message.arguments(); }

    void reply(const QVariantList &arguments = {}) const;
    void refuse(const ErrorReply &error) const;

private:
    void send(const QDBusMessage &answer) const;

    QDBusMessage m_message;
    // By name: a copy of the connection would keep it open when the service leaves the bus.
    QString m_connectionName;
};

} // namespace simulator
