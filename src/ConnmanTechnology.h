#pragma once

#include "ConnmanProperties.h"
#include "ConnmanRemote.h"

#include <QObject>
#include <QVariant>

class QDBusConnection;
class QDBusVariant;

/// Proxy of one ConnMan technology (net.connman.Technology), such as "wifi": its power, and scans.
/// It keeps a cache of the properties; calls use Qt's default time-out.
class ConnmanTechnology : public QObject
{
    Q_OBJECT

public:
    /// `name` is the last element of the technology's object path.
    ConnmanTechnology(const QDBusConnection &connection, const QString &name, QObject *parent);

    QString name() const;
    QString type() const;
    bool isConnected() const;
    bool isTethering() const;
    /// Refreshes the cache, then: 1 powered, 0 not powered, -1 unknown. A number other than 0 counts as
    /// powered, a value that is neither boolean nor number as unknown.
    int isPowered();

    /// Replaces the cache by what "GetProperties" reports. False only when ConnMan no longer has the
    /// technology; any other failure keeps the old cache and counts as current.
    bool dbusUpdateProperties();
    /// Writes one property; the cache follows with ConnMan's "PropertyChanged".
    bool setProperty(const QString &name, const QVariant &value);
    bool setPowered(bool on);
    /// Scans for networks and blocks until ConnMan reports the scan complete: usually 1 to 4 s, more with
    /// many channels, and no longer than a call's time-out (25 s), which counts as failed.
    bool scan() const;

public slots:
    /// ConnMan's "PropertyChanged" of this technology.
    void propertyChanged(const QString &name, const QDBusVariant &value);

private:
    ConnmanRemote m_remote;
    ConnmanProperties m_properties;
};
