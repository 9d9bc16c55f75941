#include "Neighbourhood.h"

#include <algorithm>

namespace simulator {

namespace {
const QString ethernetAddress = QStringLiteral("020000000100");

QString managed(const QString &cardAddress, const QString &network, const QString &security)
{
    const QString digits = QString(cardAddress).remove(QLatin1Char(':')).toLower();
    return QStringLiteral("wifi_%1_%2_managed_%3").arg(digits, network, security);
}

Lease leaseOfSubnet(int subnet)
{
    const QString prefix = QStringLiteral("192.168.%1.").arg(subnet % 256);
    const QString router = prefix + QStringLiteral("1");
    return {prefix + QStringLiteral("50"), QStringLiteral("255.255.255.0"), router, {router}, {}};
}

QString text(const QVariantMap &options, const char *name, const QString &fallback = {})
{
    return options.value(QLatin1String(name), fallback).toString();
}

bool flag(const QVariantMap &options, const char *name, bool fallback)
{
    return options.value(QLatin1String(name), fallback).toBool();
}

bool isRight(const QString &expected, const QString &given)
{
    return expected.isEmpty() || expected == given;
}
} // namespace

AccessPoint AccessPoint::fromOptions(const QVariantMap &options, int number)
{
    constexpr int firstSubnet = 10;
    const QString security = text(options, "security", QStringLiteral("psk"));
    AccessPoint accessPoint;
    accessPoint.ssid = text(options, "ssid");
    accessPoint.hasWps = security == QLatin1String("wps");
    accessPoint.security = accessPoint.hasWps ? QStringLiteral("psk") : security;
    accessPoint.passphrase = text(options, "passphrase");
    accessPoint.identity = text(options, "identity");
    accessPoint.pin = text(options, "pin");
    accessPoint.isHidden = flag(options, "hidden", false);
    accessPoint.isProvisioned = flag(options, "provisioned", true);
    accessPoint.strength =
        options.value(QStringLiteral("strength"), QVariant::fromValue<uchar>(60)).value<uchar>();
    accessPoint.lease = leaseOfSubnet(firstSubnet + number);
    accessPoint.lease.address = text(options, "address", accessPoint.lease.address);
    accessPoint.lease.gateway = text(options, "gateway", accessPoint.lease.gateway);
    accessPoint.lease.nameservers = QStringList{accessPoint.lease.gateway};
    accessPoint.lease.ipv6Address = text(options, "ipv6");
    return accessPoint;
}

QString AccessPoint::namedIdentifier(const QString &cardAddress) const
{
    return managed(cardAddress, QString::fromLatin1(ssid.toUtf8().toHex()), security);
}

QString AccessPoint::scannedIdentifier(const QString &cardAddress) const
{
    return isHidden ? managed(cardAddress, QStringLiteral("hidden"), security) : namedIdentifier(cardAddress);
}

QStringList AccessPoint::securityWords() const
{
    return hasWps ? QStringList{security, QStringLiteral("wps")} : QStringList{security};
}

Cable Cable::fromOptions(bool plugged, const QVariantMap &options)
{
    Cable cable;
    cable.isPlugged = plugged;
    cable.hasDhcp = flag(options, "dhcp", true);
    const Lease usual = leaseOfSubnet(0);
    cable.lease.address = text(options, "address", usual.address);
    cable.lease.netmask = text(options, "netmask", usual.netmask);
    cable.lease.gateway = text(options, "gateway", usual.gateway);
    cable.lease.nameservers = QStringList{cable.lease.gateway};
    cable.lease.ipv6Address = text(options, "ipv6");
    return cable;
}

const AccessPoint &Neighbourhood::add(const AccessPoint &accessPoint)
{
    remove(accessPoint.ssid);
    m_accessPoints.append(accessPoint);
    return m_accessPoints.constLast();
}

void Neighbourhood::remove(const QString &ssid)
{
    const auto gone = std::remove_if(m_accessPoints.begin(), m_accessPoints.end(),
                                     [&ssid](const AccessPoint &each) { return each.ssid == ssid; });
    m_accessPoints.erase(gone, m_accessPoints.end());
}

const AccessPoint *Neighbourhood::setInReach(const QString &ssid, bool isInReach)
{
    const auto found = std::find_if(m_accessPoints.begin(), m_accessPoints.end(),
                                    [&ssid](const AccessPoint &each) { return each.ssid == ssid; });
    if (found == m_accessPoints.end()) {
        return nullptr;
    }
    found->isInReach = isInReach;
    return &*found;
}

const AccessPoint *Neighbourhood::find(const QString &ssid) const
{
    const auto found =
        std::find_if(m_accessPoints.cbegin(), m_accessPoints.cend(),
                     [&ssid](const AccessPoint &each) { return each.ssid == ssid && each.isInReach; });
    return found == m_accessPoints.cend() ? nullptr : &*found;
}

bool Neighbourhood::isBehind(const Service &service) const
{
    return find(service.ssid) != nullptr || (service.identifier == cableIdentifier() && cable.isPlugged);
}

bool Neighbourhood::lacksProvisioning(const Service &service) const
{
    const AccessPoint *accessPoint = find(service.ssid);
    return accessPoint != nullptr && accessPoint->security == QLatin1String("ieee8021x") &&
           !accessPoint->isProvisioned;
}

Verdict Neighbourhood::verdict(const Service &service) const
{
    const AccessPoint *accessPoint = find(service.ssid);
    if (accessPoint == nullptr || accessPoint->security == QLatin1String("none")) {
        return Verdict::Accepted;
    }
    if (service.useWps) {
        return isRight(accessPoint->pin, service.pin) ? Verdict::Accepted : Verdict::Refused;
    }
    const bool isKnownPassphrase = isRight(accessPoint->passphrase, service.passphrase);
    if (accessPoint->security == QLatin1String("ieee8021x")) {
        const bool isAccepted = isKnownPassphrase && isRight(accessPoint->identity, service.identity);
        return isAccepted ? Verdict::Accepted : Verdict::Refused;
    }
    return isKnownPassphrase ? Verdict::Accepted : Verdict::WrongPassphrase;
}

std::optional<Lease> Neighbourhood::lease(const Service &service) const
{
    if (service.identifier == cableIdentifier()) {
        return cable.hasDhcp ? std::make_optional(cable.lease) : std::nullopt;
    }
    if (!servesAddresses) {
        return std::nullopt;
    }
    const AccessPoint *accessPoint = find(service.ssid);
    return accessPoint != nullptr ? accessPoint->lease : leaseOfSubnet(1);
}

QString Neighbourhood::ipv6Address(const Service &service) const
{
    if (service.identifier == cableIdentifier()) {
        return cable.lease.ipv6Address;
    }
    const AccessPoint *accessPoint = servesAddresses ? find(service.ssid) : nullptr;
    return accessPoint != nullptr ? accessPoint->lease.ipv6Address : QString();
}

QString cableIdentifier()
{
    return QStringLiteral("ethernet_%1_cable").arg(ethernetAddress);
}

} // namespace simulator
