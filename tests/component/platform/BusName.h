#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QString>

/// A program of its own on the bus, as the bus sees it: a connection that can own names.
class BusName
{
public:
    BusName(const QString &address, const QString &program)
        : m_program(program)
        , m_connection(QDBusConnection::connectToBus(address, program))
    {
    }
    ~BusName() { leave(); }
    BusName(const BusName &) = delete;
    BusName &operator=(const BusName &) = delete;

    QDBusConnection &connection() { return m_connection; }

    /// Takes the name, from another program too if that has let it go with `take` as well.
    bool take(const QString &name)
    {
        const auto reply =
            m_connection.interface()->registerService(name, QDBusConnectionInterface::ReplaceExistingService,
                                                      QDBusConnectionInterface::AllowReplacement);
        return reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
    }
    bool release(const QString &name) { return m_connection.unregisterService(name); }

    /// The program ends, its calls unanswered.
    void leave()
    {
        QDBusConnection::disconnectFromBus(m_program);
        m_connection = QDBusConnection(m_program);
    }

private:
    const QString m_program;
    QDBusConnection m_connection;
};
