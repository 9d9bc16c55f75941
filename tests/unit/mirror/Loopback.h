#pragma once

#include "PrivateBus.h"

#include <QDBusConnection>
#include <QDBusVirtualObject>

/// Shows what Qt hands to a receiver when a value has been through D-Bus: a connection that calls itself,
/// for which Qt marshals and demarshals the message as for any other receiver.
class Loopback : public QDBusVirtualObject
{
    Q_OBJECT

public:
    Loopback();
    ~Loopback() override;

    /// `sent` as the receiver of a call with that argument has it.
    QVariant argument(const QVariant &sent);
    /// `sent` as the receiver of a variant with that content has it.
    QVariant variantContent(const QVariant &sent);

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;
    QString introspect(const QString &path) const override;

private:
    test_support::PrivateBus m_bus;
    QDBusConnection m_connection;
    QVariant m_received;
};
