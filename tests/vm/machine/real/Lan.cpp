#include "Lan.h"

#include "Command.h"
#include "FarEnd.h"
#include "Text.h"

#include <QFile>

namespace {

const QString lanServer = "/run/vm/lan.pid"_s;

bool stopLanServer()
{
    return !QFile::exists(lanServer) || FarEnd::killServer(lanServer);
}

} // namespace

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
    if (!special.isEmpty() && !FarEnd::runIn("lan"_s, "dnsmasq"_s, common + special)) {
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
