#include "Surroundings.h"

#include "Command.h"
#include "Eventually.h"
#include "OnTheAir.h"
#include "Text.h"

#include <QFile>
#include <QNetworkInterface>
#include <QRegularExpression>

namespace {

const QString airDirectory = "/run/vm/air/"_s;
const QString lanServer = "/run/vm/lan.pid"_s;

bool runIn(const QString &space, const QString &program, const QStringList &arguments)
{
    return run("ip"_s, QStringList{"netns"_s, "exec"_s, space, program} + arguments);
}

QStringList controlArguments(const QString &accessPoint, const QStringList &command)
{
    return QStringList{"-p"_s, "/run/hostapd"_s, "-i"_s, accessPoint} + command;
}

/// hostapd_cli's exit status says nothing about hostapd's answer.
bool control(const QString &accessPoint, const QStringList &command)
{
    return outputOf("hostapd_cli"_s, controlArguments(accessPoint, command)).contains("OK"_s);
}

bool isOn(const QString &accessPoint)
{
    return outputOf("hostapd_cli"_s, controlArguments(accessPoint, {"status"_s})).contains("state=ENABLED"_s);
}

bool killServer(const QString &pidFile)
{
    QFile file(pidFile);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QString pid = QString::fromLatin1(file.readAll()).trimmed();
    return run("kill"_s, {pid}) && eventually([&] { return !QFile::exists("/proc/"_s + pid); }) &&
           (QFile::remove(pidFile) || !QFile::exists(pidFile));
}

bool stopLanServer()
{
    return !QFile::exists(lanServer) || killServer(lanServer);
}

QString fieldOf(const QString &text, const QString &pattern)
{
    return QRegularExpression(pattern, QRegularExpression::MultilineOption).match(text).captured(1);
}

QString linkOfWlan()
{
    return outputOf("iw"_s, {"dev"_s, "wlan0"_s, "link"_s});
}

} // namespace

bool Air::restore()
{
    if (!m_touched) {
        return true;
    }
    m_touched = false;
    const QStringList always{"home"_s, "cafe"_s, "cellar"_s, "office"_s, "studio"_s};
    for (const QString &accessPoint : always) {
        if (!isOn(accessPoint) && !switchOn(accessPoint)) {
            return false;
        }
    }
    const QString garden = "garden"_s;
    const bool gardenOff = !isOn(garden) || switchOff(garden);
    m_touched = false;
    return gardenOff && serveAddresses(true);
}

bool Air::switchOn(const QString &accessPoint)
{
    m_touched = true;
    return control(accessPoint, {"enable"_s}) && eventually([&] { return isOn(accessPoint); });
}

bool Air::switchOff(const QString &accessPoint)
{
    m_touched = true;
    return control(accessPoint, {"disable"_s}) && eventually([&] { return !isOn(accessPoint); });
}

bool Air::serveAddresses(bool on)
{
    if (on == m_serving) {
        return true;
    }
    m_touched = true;
    m_serving = on;
    if (!on) {
        return killServer(airDirectory + "dnsmasq.pid"_s);
    }
    return runIn("ap"_s, "dnsmasq"_s, {"--conf-file=%1dnsmasq.conf"_s.arg(airDirectory)});
}

bool Air::expectPin(const QString &accessPoint, const QString &pin)
{
    return control(accessPoint, {"wps_pin"_s, "any"_s, pin});
}

QStringList OnTheAir::stations(const QString &accessPoint)
{
    const QString answer = outputOf("hostapd_cli"_s, controlArguments(accessPoint, {"list_sta"_s}));
    return answer.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

bool Air::reaches(const QString &address)
{
    return runIn("ap"_s, "ping"_s, {"-c"_s, "3"_s, "-A"_s, "-W"_s, "5"_s, address});
}

bool Lan::plugIn(Server server)
{
    if (!stopLanServer()) {
        return false;
    }
    const QStringList common{"--conf-file=/dev/null"_s,
                             "--port=0"_s,
                             "--no-ping"_s,
                             "--leasefile-ro"_s,
                             "--dhcp-authoritative"_s,
                             "--interface=lan0"_s,
                             "--pid-file=%1"_s.arg(lanServer),
                             "--log-facility=/run/results/log/lan.log"_s};
    QStringList special;
    switch (server) {
    case Server::Nobody:
        break;
    case Server::Dhcp:
        special = QStringList{"--dhcp-range=10.20.0.50,10.20.0.99,255.255.255.0,1h"_s};
        break;
    case Server::OtherDhcp:
        special = QStringList{"--dhcp-range=10.21.0.50,10.21.0.99,255.255.255.0,1h"_s};
        break;
    case Server::Ipv6Router:
        special = QStringList{"--enable-ra"_s, "--dhcp-range=fd00:20::,ra-only,64,1h"_s};
        break;
    }
    if (!special.isEmpty() && !runIn("lan"_s, "dnsmasq"_s, common + special)) {
        return false;
    }
    m_plugged = run("ip"_s, {"-n"_s, "lan"_s, "link"_s, "set"_s, "lan0"_s, "up"_s});
    return m_plugged;
}

bool Lan::unplug()
{
    if (m_plugged) {
        m_plugged = !run("ip"_s, {"-n"_s, "lan"_s, "link"_s, "set"_s, "lan0"_s, "down"_s});
    }
    return stopLanServer() && !m_plugged;
}

QString Kernel::joinedNetwork()
{
    return fieldOf(linkOfWlan(), "^\\s*SSID: (.*)$"_s);
}

QString OnTheAir::joinedAccessPoint()
{
    return fieldOf(linkOfWlan(), "^Connected to ([0-9a-f:]{17})"_s);
}

QStringList Kernel::addresses(const QString &interface)
{
    QStringList addresses;
    const auto entries = QNetworkInterface::interfaceFromName(interface).addressEntries();
    for (const QNetworkAddressEntry &entry : entries) {
        QHostAddress address = entry.ip();
        if (!address.isLinkLocal()) {
            address.setScopeId({});
            addresses.append(address.toString());
        }
    }
    return addresses;
}

QString Kernel::hardwareAddress(const QString &interface)
{
    return QNetworkInterface::interfaceFromName(interface).hardwareAddress().toLower();
}

QString Kernel::region()
{
    return fieldOf(outputOf("iw"_s, {"reg"_s, "get"_s}), "^country ([A-Z0-9]{2})"_s);
}

bool Kernel::setRegion(const QString &country)
{
    return run("iw"_s, {"reg"_s, "set"_s, country}) && eventually([&] { return region() == country; });
}
