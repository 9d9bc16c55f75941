#pragma once

#include "ConnmanConversation.h"
#include "PrivateBus.h"
#include "Surroundings.h"

#include <QDBusConnection>
#include <QStringList>

/// ConnMan, real or simulated, with a plugged cable that has its lease, and what it says on the bus. No
/// daemon. An address of the DHCP server's is told as "LEASE".
class Conversation
{
public:
    Conversation();
    ~Conversation();
    Q_DISABLE_COPY_MOVE(Conversation)

    /// Runs the event loop until the cable has its lease and nothing more is said; forgets what was.
    bool begin();

    /// Calls a method of the wired service, of its technology or of the manager: the values of the reply, or
    /// "error name: message".
    QString askCable(const char *method, const QVariantList &arguments = {});
    QString askTechnology(const char *method, const QVariantList &arguments = {});
    QString askManager(const char *method, const QVariantList &arguments = {});
    /// The same for the method that sets a property.
    QString setOfCable(const char *property, const QVariant &value);
    QString setOfTechnology(const char *property, const QVariant &value);

    /// What has been said since the last call of this, once there are as many lines and nothing more is said.
    QStringList heard(int lines = 0);

private:
    test_support::PrivateBus m_bus;
    QDBusConnection m_connection;
    std::unique_ptr<Surroundings> m_surroundings; // gone before the connection
    test_support::ConnmanConversation m_connman;
};
