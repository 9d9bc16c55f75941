#include "Surroundings.h"

#include "PlainValue.h"
#include "SimulatorClient.h"

#include <limits>
#include <QHostAddress>

namespace {

const QString connman = "net.connman"_s;
const QString speechService = "com.tactora.Speech"_s;
const QString wiredService = "ethernet_020000000100_cable"_s;
const QString leasedAddress = "198.51.100.50"_s;

int prefixLength(const QString &netmask)
{
    return QHostAddress::parseSubnet("0.0.0.0/"_s + netmask).second;
}

} // namespace

struct Surroundings::Parts
{
    explicit Parts(const QString &busAddress)
        : simulator(busAddress)
    {
    }

    void tellCable();
    QVariantMap ipv4();

    test_support::SimulatorClient simulator;
    bool isConnmanThere = false;
    bool isPlugged = false;
    bool hasDhcpServer = false;
    // An orderly end takes the link down, which the simulator has no picture of.
    bool isLinkDown = false;
};

// Where nobody but ConnMan looks after the link, nothing happens to it without ConnMan.
void Surroundings::Parts::tellCable()
{
    if (isConnmanThere) {
        simulator.setCable(isPlugged, {{"address"_s, leasedAddress},
                                       {"netmask"_s, netmask()},
                                       {"gateway"_s, gateway()},
                                       {"dhcp"_s, hasDhcpServer}});
    }
}

QVariantMap Surroundings::Parts::ipv4()
{
    if (isLinkDown || !simulator.services().contains(wiredService)) {
        return {};
    }
    return test_support::plain(simulator.serviceProperties(wiredService).value("IPv4"_s)).toMap();
}

Surroundings::Surroundings(const QString &busAddress, const QDBusConnection & /*client*/)
    : m_parts(std::make_unique<Parts>(busAddress))
{
    test_support::SimulatorClient &simulator = m_parts->simulator;
    QObject::connect(&simulator, &test_support::SimulatorClient::spoke, &m_speech,
                     [this](const QString &, const QVariantMap &request) { m_speech.add(request); });
    simulator.removeTechnology("wifi"_s);
    simulator.setPresent(connman, false);
}

Surroundings::~Surroundings() = default;

QStringList Surroundings::offeredNameservers()
{
    return {gateway()};
}

QString Surroundings::service() const
{
    return wiredService;
}

void Surroundings::plugCable()
{
    m_parts->isPlugged = true;
    m_parts->tellCable();
}

void Surroundings::unplugCable()
{
    m_parts->isPlugged = false;
    m_parts->tellCable();
}

void Surroundings::startDhcpServer()
{
    m_parts->hasDhcpServer = true;
    m_parts->tellCable();
}

void Surroundings::stopDhcpServer()
{
    m_parts->hasDhcpServer = false;
    m_parts->tellCable();
}

void Surroundings::startConnman(OnlineCheck onlineCheck)
{
    // Without a server for the online check "ready" is the highest state.
    m_parts->simulator.setTiming("online"_s,
                                 onlineCheck == OnlineCheck::On ? 0 : std::numeric_limits<int>::max());
    m_parts->isLinkDown = false;
    m_parts->isConnmanThere = true;
    m_parts->tellCable();
    m_parts->simulator.setPresent(connman, true);
}

void Surroundings::killConnman()
{
    m_parts->isConnmanThere = false;
    m_parts->simulator.setPresent(connman, false);
}

void Surroundings::stopConnman()
{
    killConnman();
    m_parts->isLinkDown = true;
}

QVariantMap Surroundings::connmanProperties() const
{
    return test_support::plain(m_parts->simulator.serviceProperties(wiredService)).toMap();
}

QStringList Surroundings::addresses() const
{
    const QVariantMap values = m_parts->ipv4();
    const QString address = values.value("Address"_s).toString();
    if (address.isEmpty()) {
        return {};
    }
    const int prefix = prefixLength(values.value("Netmask"_s).toString());
    return {"%1/%2"_s.arg(address).arg(prefix)};
}

QString Surroundings::defaultGateway() const
{
    return m_parts->ipv4().value("Gateway"_s).toString();
}

QStringList Surroundings::nameservers() const
{
    return connmanProperties().value("Nameservers"_s).toStringList();
}

bool Surroundings::ipv6Enabled() const
{
    const QVariantMap configuration = connmanProperties().value("IPv6.Configuration"_s).toMap();
    return configuration.value("Method"_s) != QLatin1String("off");
}

void Surroundings::setSpeechServicePresent(bool present)
{
    m_parts->simulator.setPresent(speechService, present);
}
