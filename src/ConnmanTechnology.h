#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

#include <optional>

class QDBusInterface;
class QDBusVariant;

/// Proxy of one ConnMan technology (net.connman.Technology), such as "wifi": its power, and scans.
/// It keeps a cache of the properties; calls use Qt's default time-out.
class ConnmanTechnology : public QObject
{
    Q_OBJECT

public:
    /// `name` is the last element of the technology's object path.
    ConnmanTechnology(QDBusConnection connection, const QString &name, QObject *parent);
    ~ConnmanTechnology() override;

    QString name() const;
    QString type() const;
    bool isConnected() const;
    bool isTethering() const;
    /// Refreshes the cache, then: 1 powered, 0 not powered, -1 unknown.
    int isPowered();

    /// Replaces the cache by what "GetProperties" reports. False only when ConnMan no longer has the
    /// technology; any other failure keeps the old cache and counts as current.
    bool dbusUpdateProperties();
    /// Writes one property; the cache follows with ConnMan's "PropertyChanged".
    bool setProperty(const QString &name, const QVariant &value);
    bool setPowered(bool on);
    /// Scans for networks and blocks until ConnMan reports the scan complete, which takes seconds.
    bool scan() const;

public slots:
    /// ConnMan's "PropertyChanged" of this technology.
    void propertyChanged(const QString &name, const QDBusVariant &value);

private:
    std::optional<QVariant> property(const QString &key, int requiredType) const;

    QVariantMap m_properties;
    QString m_path;
    QDBusInterface *m_interface;
};
