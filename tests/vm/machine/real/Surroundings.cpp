#include "Surroundings.h"

#include "Command.h"
#include "Eventually.h"
#include "OnTheAir.h"

#include <QFile>
#include <QNetworkInterface>
#include <QRegularExpression>

namespace {

const QString airDirectory = QStringLiteral("/run/vm/air/");
const QString lanServer = QStringLiteral("/run/vm/lan.pid");

bool runIn(const QString &space, const QString &program, const QStringList &arguments)
{
    return run(QStringLiteral("ip"),
               QStringList{QStringLiteral("netns"), QStringLiteral("exec"), space, program} + arguments);
}

QStringList controlArguments(const QString &accessPoint, const QStringList &command)
{
    return QStringList{QStringLiteral("-p"), QStringLiteral("/run/hostapd"), QStringLiteral("-i"),
                       accessPoint} +
           command;
}

/// hostapd_cli's exit status says nothing about hostapd's answer.
bool control(const QString &accessPoint, const QStringList &command)
{
    return outputOf(QStringLiteral("hostapd_cli"), controlArguments(accessPoint, command))
        .contains(QStringLiteral("OK"));
}

bool isOn(const QString &accessPoint)
{
    return outputOf(QStringLiteral("hostapd_cli"), controlArguments(accessPoint, {QStringLiteral("status")}))
        .contains(QStringLiteral("state=ENABLED"));
}

bool killServer(const QString &pidFile)
{
    QFile file(pidFile);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QString pid = QString::fromLatin1(file.readAll()).trimmed();
    return run(QStringLiteral("kill"), {pid}) &&
           eventually([&] { return !QFile::exists(QStringLiteral("/proc/") + pid); }) &&
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
    return outputOf(QStringLiteral("iw"),
                    {QStringLiteral("dev"), QStringLiteral("wlan0"), QStringLiteral("link")});
}

} // namespace

bool Air::restore()
{
    if (!m_touched) {
        return true;
    }
    m_touched = false;
    const QStringList always{QStringLiteral("home"), QStringLiteral("cafe"), QStringLiteral("cellar"),
                             QStringLiteral("office"), QStringLiteral("studio")};
    for (const QString &accessPoint : always) {
        if (!isOn(accessPoint) && !switchOn(accessPoint)) {
            return false;
        }
    }
    const QString garden = QStringLiteral("garden");
    const bool gardenOff = !isOn(garden) || switchOff(garden);
    m_touched = false;
    return gardenOff && serveAddresses(true);
}

bool Air::switchOn(const QString &accessPoint)
{
    m_touched = true;
    return control(accessPoint, {QStringLiteral("enable")}) && eventually([&] { return isOn(accessPoint); });
}

bool Air::switchOff(const QString &accessPoint)
{
    m_touched = true;
    return control(accessPoint, {QStringLiteral("disable")}) &&
           eventually([&] { return !isOn(accessPoint); });
}

bool Air::serveAddresses(bool on)
{
    if (on == m_serving) {
        return true;
    }
    m_touched = true;
    m_serving = on;
    if (!on) {
        return killServer(airDirectory + QStringLiteral("dnsmasq.pid"));
    }
    return runIn(QStringLiteral("ap"), QStringLiteral("dnsmasq"),
                 {QStringLiteral("--conf-file=%1dnsmasq.conf").arg(airDirectory)});
}

bool Air::expectPin(const QString &accessPoint, const QString &pin)
{
    return control(accessPoint, {QStringLiteral("wps_pin"), QStringLiteral("any"), pin});
}

QStringList OnTheAir::stations(const QString &accessPoint)
{
    const QString answer =
        outputOf(QStringLiteral("hostapd_cli"), controlArguments(accessPoint, {QStringLiteral("list_sta")}));
    return answer.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

bool Air::reaches(const QString &address)
{
    return runIn(QStringLiteral("ap"), QStringLiteral("ping"),
                 {QStringLiteral("-c"), QStringLiteral("3"), QStringLiteral("-A"), QStringLiteral("-W"),
                  QStringLiteral("5"), address});
}

bool Lan::plugIn(Server server)
{
    if (!stopLanServer()) {
        return false;
    }
    const QStringList common{QStringLiteral("--conf-file=/dev/null"),
                             QStringLiteral("--port=0"),
                             QStringLiteral("--no-ping"),
                             QStringLiteral("--leasefile-ro"),
                             QStringLiteral("--dhcp-authoritative"),
                             QStringLiteral("--interface=lan0"),
                             QStringLiteral("--pid-file=%1").arg(lanServer),
                             QStringLiteral("--log-facility=/run/results/log/lan.log")};
    QStringList special;
    switch (server) {
    case Server::Nobody:
        break;
    case Server::Dhcp:
        special = QStringList{QStringLiteral("--dhcp-range=10.20.0.50,10.20.0.99,255.255.255.0,1h")};
        break;
    case Server::OtherDhcp:
        special = QStringList{QStringLiteral("--dhcp-range=10.21.0.50,10.21.0.99,255.255.255.0,1h")};
        break;
    case Server::Ipv6Router:
        special = QStringList{QStringLiteral("--enable-ra"),
                              QStringLiteral("--dhcp-range=fd00:20::,ra-only,64,1h")};
        break;
    }
    if (!special.isEmpty() && !runIn(QStringLiteral("lan"), QStringLiteral("dnsmasq"), common + special)) {
        return false;
    }
    m_plugged =
        run(QStringLiteral("ip"), {QStringLiteral("-n"), QStringLiteral("lan"), QStringLiteral("link"),
                                   QStringLiteral("set"), QStringLiteral("lan0"), QStringLiteral("up")});
    return m_plugged;
}

bool Lan::unplug()
{
    if (m_plugged) {
        m_plugged = !run(QStringLiteral("ip"),
                         {QStringLiteral("-n"), QStringLiteral("lan"), QStringLiteral("link"),
                          QStringLiteral("set"), QStringLiteral("lan0"), QStringLiteral("down")});
    }
    return stopLanServer() && !m_plugged;
}

QString Kernel::joinedNetwork()
{
    return fieldOf(linkOfWlan(), QStringLiteral("^\\s*SSID: (.*)$"));
}

QString OnTheAir::joinedAccessPoint()
{
    return fieldOf(linkOfWlan(), QStringLiteral("^Connected to ([0-9a-f:]{17})"));
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
    return fieldOf(outputOf(QStringLiteral("iw"), {QStringLiteral("reg"), QStringLiteral("get")}),
                   QStringLiteral("^country ([A-Z0-9]{2})"));
}

bool Kernel::setRegion(const QString &country)
{
    return run(QStringLiteral("iw"), {QStringLiteral("reg"), QStringLiteral("set"), country}) &&
           eventually([&] { return region() == country; });
}
