#pragma once

#include <QDBusMessage>
#include <QDBusVariant>
#include <QHash>
#include <QObject>
#include <QVariantMap>

/// The least that can mirror ConnMan's services: one subscription to all their changes, their properties as
/// maps, and a new look at those of a service whose state changes.
class BareClient : public QObject
{
    Q_OBJECT

public:
    BareClient();

    void mirror();
    int size() const { return m_services.size(); }

private slots:
    void propertyChanged(const QString &name, const QDBusVariant &value, const QDBusMessage &message);

private:
    void readProperties(const QString &path);

    QHash<QString, QVariantMap> m_services;
};
