#include "SimulatedBackend.h"

#include <limits>
#include <QCoreApplication>
#include <QDBusArgument>
#include <QHostAddress>

namespace {

const QString connman = QStringLiteral("net.connman");
const QString speechService = QStringLiteral("com.tactora.Speech");
const QString leasedAddress = QStringLiteral("198.51.100.50");

int prefixLength(const QString &netmask)
{
    return QHostAddress::parseSubnet(QStringLiteral("0.0.0.0/") + netmask).second;
}

} // namespace

SimulatedBackend::SimulatedBackend(const QString &busAddress)
    : m_simulator(busAddress)
{
    QObject::connect(&m_simulator, &test_support::SimulatorClient::spoke, &m_simulator,
                     [this](const QString &, const QVariantMap &request) { speech().add(request); });
    m_simulator.removeTechnology(QStringLiteral("wifi"));
    // There is no server for the online check: "ready" is the highest state here.
    m_simulator.setTiming(QStringLiteral("online"), std::numeric_limits<int>::max());
    m_simulator.setPresent(connman, false);
}

QString SimulatedBackend::service() const
{
    return QStringLiteral("ethernet_020000000100_cable");
}

void SimulatedBackend::setCable(bool plugged)
{
    m_isPlugged = plugged;
    m_simulator.setCable(plugged, {{QStringLiteral("address"), leasedAddress},
                                   {QStringLiteral("netmask"), netmask()},
                                   {QStringLiteral("gateway"), gateway()},
                                   {QStringLiteral("dhcp"), m_hasDhcpServer}});
}

void SimulatedBackend::plugCable()
{
    setCable(true);
}

void SimulatedBackend::unplugCable()
{
    setCable(false);
}

void SimulatedBackend::startDhcpServer()
{
    m_hasDhcpServer = true;
    setCable(m_isPlugged);
}

void SimulatedBackend::startConnman()
{
    m_isLinkDown = false;
    m_simulator.setPresent(connman, true);
}

void SimulatedBackend::killConnman()
{
    m_simulator.setPresent(connman, false);
}

void SimulatedBackend::stopConnman()
{
    killConnman();
    m_isLinkDown = true;
}

QVariantMap SimulatedBackend::connmanProperties() const
{
    return m_simulator.serviceProperties(service());
}

QVariantMap SimulatedBackend::ipv4() const
{
    if (m_isLinkDown || !m_simulator.services().contains(service())) {
        return {};
    }
    return qdbus_cast<QVariantMap>(connmanProperties().value(QStringLiteral("IPv4")));
}

QStringList SimulatedBackend::addresses() const
{
    const QVariantMap values = ipv4();
    const QString address = values.value(QStringLiteral("Address")).toString();
    if (address.isEmpty()) {
        return {};
    }
    const int prefix = prefixLength(values.value(QStringLiteral("Netmask")).toString());
    return {QStringLiteral("%1/%2").arg(address).arg(prefix)};
}

QString SimulatedBackend::defaultGateway() const
{
    return ipv4().value(QStringLiteral("Gateway")).toString();
}

QStringList SimulatedBackend::nameservers() const
{
    return connmanProperties().value(QStringLiteral("Nameservers")).toStringList();
}

bool SimulatedBackend::ipv6Enabled() const
{
    const auto configuration =
        qdbus_cast<QVariantMap>(connmanProperties().value(QStringLiteral("IPv6.Configuration")));
    return configuration.value(QStringLiteral("Method")) != QLatin1String("off");
}

void SimulatedBackend::setSpeechServicePresent(bool present)
{
    m_simulator.setPresent(speechService, present);
}

std::unique_ptr<Backend> makeBackend(const QString &busAddress, const QDBusConnection &)
{
    return std::make_unique<SimulatedBackend>(busAddress);
}
