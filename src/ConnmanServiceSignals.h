#pragma once

#include <QHash>
#include <QObject>

#include <memory>

class ConnmanService;
class QDBusConnection;
class QDBusMessage;
class QDBusVariant;

/// Hands ConnMan's "PropertyChanged" to the service it is about: one subscription for all of them, where one
/// for each would cost the bus and Qt a comparison with every known network for every signal, and where the
/// bus allows a connection no more than 512 (Qt does not see when it refuses one).
class ConnmanServiceSignals : public QObject
{
    Q_OBJECT

public:
    /// The one of that connection; it lives as long as somebody holds it.
    static std::shared_ptr<ConnmanServiceSignals> of(const QDBusConnection &connection);

    /// From now on the service's propertyChanged() is called, until remove(). False when nothing can be
    /// received on this connection.
    bool add(ConnmanService *service);
    void remove(ConnmanService *service);

private slots:
    void propertyChanged(const QString &name, const QDBusVariant &value, const QDBusMessage &signal);

private:
    explicit ConnmanServiceSignals(QDBusConnection connection);

    bool m_isSubscribed = false;
    /// By object path. There may be two of one path: ConnMan has it again while an operation still holds the
    /// one that was removed.
    QMultiHash<QString, ConnmanService *> m_services;
};
