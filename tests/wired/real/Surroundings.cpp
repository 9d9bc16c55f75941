#include "Surroundings.h"

#include "ChildProcess.h"
#include "DeviceFiles.h"
#include "EventWait.h"
#include "Kernel.h"
#include "OutsideTheWorld.h"
#include "PlainValue.h"
#include "SpeechService.h"
#include "WebServer.h"
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDir>
#include <QFile>
#include <QTest>

using test_support::eventTimeoutMs;
using test_support::waitUntil;

namespace {

const QString connmanName = "net.connman"_s;
const QString connmanMemory = "/var/lib/connman"_s;
const QString farNetwork = "lan"_s;
const QString farEnd = "lan0"_s;
const QString connmanLog = "/tmp/connman.log"_s;
const QString firstAddress = "198.51.100.50"_s;
const QString lastAddress = "198.51.100.60"_s;

void ip(const QStringList &arguments)
{
    kernel::output("ip"_s, arguments);
}

void setDeviceEnd(const QString &state)
{
    ip({"link"_s, "set"_s, Surroundings::interface(), state});
}

void setFarEnd(const QString &state)
{
    ip({"-n"_s, farNetwork, "link"_s, "set"_s, farEnd, state});
}

void forgetAddresses()
{
    ip({"address"_s, "flush"_s, "dev"_s, Surroundings::interface()});
    QFile::resize("/etc/resolv.conf"_s, 0);
}

void forgetConnmansMemory()
{
    QDir(connmanMemory).removeRecursively();
    QDir().mkpath(connmanMemory);
}

bool connmanIsOnTheBus(const QDBusConnection &bus)
{
    return bus.interface()->isServiceRegistered(connmanName);
}

// The link is there before ConnMan is, as a cable's is. ConnMan would otherwise ask for a lease some
// milliseconds before both ends of the veth pair can send: what is lost then is asked for again only 5 s
// later.
void waitForLink()
{
    const auto isUp = [] {
        return kernel::isUp(Surroundings::interface()) && kernel::isUp(farEnd, farNetwork);
    };
    if (!QTest::qWaitFor(isUp, eventTimeoutMs)) {
        qFatal("The link does not come up");
    }
}

} // namespace

struct Surroundings::Parts
{
    Parts(const QDBusConnection &connection, test_support::SpeechRecord &record)
        : bus(connection)
        , speechService(connection, record)
    {
    }

    QDBusConnection bus;
    test_support::SpeechService speechService;
    bool isPlugged = false;
    test_support::ChildProcess dhcpServer;
    test_support::ChildProcess connman;
    std::unique_ptr<WebServer> onlineCheckServer;
};

Surroundings::Surroundings(const QString & /*busAddress*/, const QDBusConnection &client)
    : m_parts(std::make_unique<Parts>(client, m_speech))
{
    if (!isInsideTheWorld()) {
        qFatal("Only for use inside tests/wired/in-world: this would take over the network of the machine");
    }
    unplugCable();
    forgetAddresses();
    forgetConnmansMemory();
}

Surroundings::~Surroundings() = default;

QStringList Surroundings::offeredNameservers()
{
    return {"198.51.100.2"_s, "198.51.100.3"_s};
}

QString Surroundings::service() const
{
    QString mac = kernel::hardwareAddress(interface());
    return "ethernet_%1_cable"_s.arg(mac.remove(QLatin1Char(':')));
}

void Surroundings::plugCable()
{
    setFarEnd("up"_s);
    m_parts->isPlugged = true;
}

void Surroundings::unplugCable()
{
    setFarEnd("down"_s);
    m_parts->isPlugged = false;
}

void Surroundings::startDhcpServer()
{
    QProcess &server = m_parts->dhcpServer;
    server.setProcessChannelMode(QProcess::MergedChannels);
    server.start(QStringLiteral(WIRED_DIR "/dhcp-server"),
                 {gateway(), firstAddress, lastAddress, offeredNameservers().join(QLatin1Char(','))});
    QByteArray log;
    while (!log.contains("IP range")) {
        if (!server.waitForReadyRead(eventTimeoutMs)) {
            qFatal("No DHCP server: %s", log.constData());
        }
        log += server.readAll();
    }
    // Nobody reads on from here, and a full pipe would stop it.
    server.closeReadChannel(QProcess::StandardOutput);
}

void Surroundings::stopDhcpServer()
{
    test_support::stopProcess(m_parts->dhcpServer);
}

void Surroundings::startConnman(OnlineCheck onlineCheck)
{
    const QString configuration = onlineCheck == OnlineCheck::On
                                      ? QStringLiteral(WIRED_DIR "/connman-online.conf")
                                      : QStringLiteral(WIRED_DIR "/connman.conf");
    m_parts->onlineCheckServer = onlineCheck == OnlineCheck::On ? std::make_unique<WebServer>() : nullptr;
    setDeviceEnd("up"_s);
    if (m_parts->isPlugged) {
        waitForLink();
    }
    QProcess &connman = m_parts->connman;
    connman.setProcessChannelMode(QProcess::MergedChannels);
    connman.setStandardOutputFile(connmanLog);
    const QDBusServiceWatcher watcher(connmanName, m_parts->bus, QDBusServiceWatcher::WatchForRegistration);
    connman.start(QStringLiteral(WIRED_DIR "/connman"), {configuration});
    if (!waitUntil([this] { return connmanIsOnTheBus(m_parts->bus); })) {
        qFatal("No ConnMan: %s", test_support::DeviceFiles::read(connmanLog).constData());
    }
}

void Surroundings::killConnman()
{
    const QDBusServiceWatcher watcher(connmanName, m_parts->bus, QDBusServiceWatcher::WatchForUnregistration);
    m_parts->connman.kill();
    m_parts->connman.waitForFinished();
    if (!waitUntil([this] { return !connmanIsOnTheBus(m_parts->bus); })) {
        qFatal("ConnMan has outlived its end");
    }
}

void Surroundings::stopConnman()
{
    test_support::stopProcess(m_parts->connman);
}

QVariantMap Surroundings::connmanProperties() const
{
    const QDBusMessage call = QDBusMessage::createMethodCall(
        connmanName, "/net/connman/service/"_s + service(), "net.connman.Service"_s, "GetProperties"_s);
    return test_support::plain(m_parts->bus.call(call).arguments().value(0)).toMap();
}

QStringList Surroundings::addresses() const
{
    return kernel::ipv4Addresses(interface());
}

QString Surroundings::defaultGateway() const
{
    return kernel::defaultGateway(interface());
}

QStringList Surroundings::nameservers() const
{
    return kernel::nameservers();
}

bool Surroundings::ipv6Enabled() const
{
    return kernel::ipv6Enabled(interface());
}

void Surroundings::setSpeechServicePresent(bool present)
{
    m_parts->speechService.setPresent(present);
}
