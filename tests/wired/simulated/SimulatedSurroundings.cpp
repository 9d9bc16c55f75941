#include "SimulatedSurroundings.h"
#include "Text.h"

#include <limits>
#include <QCoreApplication>
#include <QDBusArgument>
#include <QHostAddress>

namespace {

const QString connman = "net.connman"_s;
const QString speechService = "com.tactora.Speech"_s;
const QString leasedAddress = "198.51.100.50"_s;

int prefixLength(const QString &netmask)
{
    return QHostAddress::parseSubnet("0.0.0.0/"_s + netmask).second;
}

} // namespace

SimulatedSurroundings::SimulatedSurroundings(const QString &busAddress)
    : m_simulator(busAddress)
{
    QObject::connect(&m_simulator, &test_support::SimulatorClient::spoke, &m_simulator,
                     [this](const QString &, const QVariantMap &request) { speech().add(request); });
    m_simulator.removeTechnology("wifi"_s);
    // There is no server for the online check: "ready" is the highest state here.
    m_simulator.setTiming("online"_s, std::numeric_limits<int>::max());
    m_simulator.setPresent(connman, false);
}

QString SimulatedSurroundings::service() const
{
    return "ethernet_020000000100_cable"_s;
}

void SimulatedSurroundings::setCable(bool plugged)
{
    m_isPlugged = plugged;
    m_simulator.setCable(plugged, {{"address"_s, leasedAddress},
                                   {"netmask"_s, netmask()},
                                   {"gateway"_s, gateway()},
                                   {"dhcp"_s, m_hasDhcpServer}});
}

void SimulatedSurroundings::plugCable()
{
    setCable(true);
}

void SimulatedSurroundings::unplugCable()
{
    setCable(false);
}

void SimulatedSurroundings::startDhcpServer()
{
    m_hasDhcpServer = true;
    setCable(m_isPlugged);
}

void SimulatedSurroundings::startConnman()
{
    m_isLinkDown = false;
    m_simulator.setPresent(connman, true);
}

void SimulatedSurroundings::killConnman()
{
    m_simulator.setPresent(connman, false);
}

void SimulatedSurroundings::stopConnman()
{
    killConnman();
    m_isLinkDown = true;
}

QVariantMap SimulatedSurroundings::connmanProperties() const
{
    return m_simulator.serviceProperties(service());
}

QVariantMap SimulatedSurroundings::ipv4() const
{
    if (m_isLinkDown || !m_simulator.services().contains(service())) {
        return {};
    }
    return qdbus_cast<QVariantMap>(connmanProperties().value("IPv4"_s));
}

QStringList SimulatedSurroundings::addresses() const
{
    const QVariantMap values = ipv4();
    const QString address = values.value("Address"_s).toString();
    if (address.isEmpty()) {
        return {};
    }
    const int prefix = prefixLength(values.value("Netmask"_s).toString());
    return {"%1/%2"_s.arg(address).arg(prefix)};
}

QString SimulatedSurroundings::defaultGateway() const
{
    return ipv4().value("Gateway"_s).toString();
}

QStringList SimulatedSurroundings::nameservers() const
{
    return connmanProperties().value("Nameservers"_s).toStringList();
}

bool SimulatedSurroundings::ipv6Enabled() const
{
    const auto configuration = qdbus_cast<QVariantMap>(connmanProperties().value("IPv6.Configuration"_s));
    return configuration.value("Method"_s) != QLatin1String("off");
}

void SimulatedSurroundings::setSpeechServicePresent(bool present)
{
    m_simulator.setPresent(speechService, present);
}

std::unique_ptr<Surroundings> makeSurroundings(const QString &busAddress, const QDBusConnection &)
{
    return std::make_unique<SimulatedSurroundings>(busAddress);
}
