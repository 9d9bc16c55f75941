#include "WiredLink.h"

#include "EventWait.h"
#include "Kernel.h"
#include "OutsideTheWorld.h"
#include "Text.h"
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QDir>
#include <QFile>
#include <QTest>
#include <utility>

using test_support::eventTimeoutMs;
using test_support::waitUntil;

namespace {

const QString connmanName = "net.connman"_s;
const QString connmanMemory = "/var/lib/connman"_s;
const QString farNetwork = "lan"_s;
const QString farEnd = "lan0"_s;
const QString connmanLog = "/tmp/connman.log"_s;

void ip(const QStringList &arguments)
{
    kernel::output("ip"_s, arguments);
}

void setDeviceEnd(const QString &state)
{
    ip({"link"_s, "set"_s, WiredLink::interface(), state});
}

void setFarEnd(const QString &state)
{
    ip({"-n"_s, farNetwork, "link"_s, "set"_s, farEnd, state});
}

void forgetAddresses()
{
    ip({"address"_s, "flush"_s, "dev"_s, WiredLink::interface()});
    QFile::resize("/etc/resolv.conf"_s, 0);
}

void forgetConnmansMemory()
{
    QDir(connmanMemory).removeRecursively();
    QDir().mkpath(connmanMemory);
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QString WiredLink::service()
{
    QString mac = kernel::hardwareAddress(interface());
    return "ethernet_%1_cable"_s.arg(mac.remove(QLatin1Char(':')));
}

WiredLink::WiredLink(QDBusConnection bus)
    : m_bus(std::move(bus))
{
    if (!isInsideTheWorld()) {
        qFatal("Only for use inside tests/wired/in-world: this would take over the network of the machine");
    }
    unplugCable();
    forgetAddresses();
    forgetConnmansMemory();
}

void WiredLink::plugCable()
{
    setFarEnd("up"_s);
    m_isPlugged = true;
}

void WiredLink::unplugCable()
{
    setFarEnd("down"_s);
    m_isPlugged = false;
}

void WiredLink::startDhcpServer()
{
    m_dhcpServer.setProcessChannelMode(QProcess::MergedChannels);
    m_dhcpServer.start(QStringLiteral(WIRED_DIR "/dhcp-server"),
                       {gateway(), firstAddress(), lastAddress(), nameservers().join(QLatin1Char(','))});
    QByteArray log;
    while (!log.contains("IP range")) {
        if (!m_dhcpServer.waitForReadyRead(eventTimeoutMs)) {
            qFatal("No DHCP server: %s", log.constData());
        }
        log += m_dhcpServer.readAll();
    }
    // Nobody reads on from here, and a full pipe would stop it.
    m_dhcpServer.closeReadChannel(QProcess::StandardOutput);
}

void WiredLink::startConnman(const QString &mainConf)
{
    setDeviceEnd("up"_s);
    if (m_isPlugged) {
        waitForLink();
    }
    m_connman.setProcessChannelMode(QProcess::MergedChannels);
    m_connman.setStandardOutputFile(connmanLog);
    const QDBusServiceWatcher watcher(connmanName, m_bus, QDBusServiceWatcher::WatchForRegistration);
    m_connman.start(QStringLiteral(WIRED_DIR "/connman"), {QStringLiteral(WIRED_DIR "/") + mainConf});
    if (!waitUntil([this] { return connmanIsOnTheBus(); })) {
        qFatal("No ConnMan: %s", content(connmanLog).constData());
    }
}

// The link is there before ConnMan is, as a cable's is. ConnMan would otherwise ask for a lease some
// milliseconds before both ends of the veth pair can send: what is lost then is asked for again only 5 s
// later.
void WiredLink::waitForLink()
{
    const auto isUp = [] { return kernel::isUp(interface()) && kernel::isUp(farEnd, farNetwork); };
    if (!QTest::qWaitFor(isUp, eventTimeoutMs)) {
        qFatal("The link does not come up");
    }
}

void WiredLink::killConnman()
{
    const QDBusServiceWatcher watcher(connmanName, m_bus, QDBusServiceWatcher::WatchForUnregistration);
    m_connman.kill();
    m_connman.waitForFinished();
    if (!waitUntil([this] { return !connmanIsOnTheBus(); })) {
        qFatal("ConnMan has outlived its end");
    }
}

bool WiredLink::connmanIsOnTheBus() const
{
    return m_bus.interface()->isServiceRegistered(connmanName);
}

QVariantMap WiredLink::connmanProperties() const
{
    const QDBusMessage call = QDBusMessage::createMethodCall(
        connmanName, "/net/connman/service/"_s + service(), "net.connman.Service"_s, "GetProperties"_s);
    return QDBusReply<QVariantMap>(m_bus.call(call)).value();
}
