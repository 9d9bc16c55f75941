#pragma once

#include "PrivateBus.h"
#include "Surroundings.h"

#include <memory>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

/// ConnMan, real or simulated, with a plugged cable that has its lease, and what it says on the bus. No
/// daemon.
///
/// What is heard is told as "cable State ready": who, the property and its new value, or the other signals by
/// their names. Left out is what nobody here looks at and ConnMan repeats as it likes: "Domains", "Ethernet",
/// "Nameservers" and "Timeservers".
class Conversation : public QObject
{
    Q_OBJECT
public:
    Conversation();
    ~Conversation() override;

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

private slots:
    void hear(const QDBusMessage &signal);

private:
    QString ask(const QString &path, const QString &interface, const char *method,
                const QVariantList &arguments) const;
    QString nameOf(const QString &path) const;
    void waitForSilence();

    test_support::PrivateBus m_bus;
    QDBusConnection m_connection;
    std::unique_ptr<Surroundings> m_surroundings; // gone before the connection
    QStringList m_heard;
};
