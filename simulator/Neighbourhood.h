#pragma once

#include "Service.h"
#include <optional>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

namespace simulator {

/// What a network's DHCP server and router hand out.
struct Lease
{
    QString address;
    QString netmask;
    QString gateway;
    QStringList nameservers;
    QString ipv6Address; ///< empty: no router advertises a prefix
};

/// An access point on the air.
struct AccessPoint
{
    QString ssid;
    QString security;   ///< "psk", "none", "ieee8021x"
    QString passphrase; ///< empty: any is right
    QString identity;   ///< empty: any is right
    QString pin;        ///< empty: any is right
    bool hasWps = false;
    bool isHidden = false;
    bool isProvisioned = true; ///< ieee8021x: ConnMan has a provisioning file for it
    bool isInReach = true;     ///< false: the device does not hear it
    uchar strength = 60;
    Lease lease;

    /// From the script interface's options; `number` makes the default addresses differ.
    static AccessPoint fromOptions(const QVariantMap &options, int number);
    /// Of the service it is while ConnMan knows its name.
    QString namedIdentifier(const QString &cardAddress) const;
    /// Of the service it is in a scan.
    QString scannedIdentifier(const QString &cardAddress) const;
    QStringList securityWords() const;
};

/// Ethernet's socket.
struct Cable
{
    bool isPlugged = false;
    bool hasDhcp = true;
    Lease lease;

    static Cable fromOptions(bool plugged, const QVariantMap &options);
};

/// What becomes of an attempt to join a network with the credentials ConnMan has.
enum class Verdict { Accepted, WrongPassphrase, Refused };

/// What is around the device: access points and the cable.
class Neighbourhood
{
public:
    /// An access point with that name is replaced. Returns the stored one.
    const AccessPoint &add(const AccessPoint &accessPoint);
    void remove(const QString &ssid);
    /// Takes the access point out of the device's reach or back. Null when there is none of that name.
    const AccessPoint *setInReach(const QString &ssid, bool isInReach);
    /// The access point of that name that is in reach.
    const AccessPoint *find(const QString &ssid) const;
    const QVector<AccessPoint> &accessPoints() const { return m_accessPoints; }
    QVector<AccessPoint> &accessPoints() { return m_accessPoints; }

    Cable cable;
    /// Whether access points hand out addresses.
    bool servesAddresses = true;

    /// Whether the service is there because of an access point or the cable.
    bool isBehind(const Service &service) const;
    /// Whether it is an enterprise network that ConnMan has no provisioning file for.
    bool lacksProvisioning(const Service &service) const;
    /// A service without an access point behind it accepts everything.
    Verdict verdict(const Service &service) const;
    /// No lease: there is no DHCP server.
    std::optional<Lease> lease(const Service &service) const;
    /// The router's IPv6 address for it, empty where there is none.
    QString ipv6Address(const Service &service) const;

private:
    QVector<AccessPoint> m_accessPoints;
};

/// The identifier of eth0's service.
QString cableIdentifier();

} // namespace simulator
