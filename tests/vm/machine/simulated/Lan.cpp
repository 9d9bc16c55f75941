#include "Lan.h"

#include "Bench.h"
#include "Text.h"

bool Lan::plugIn(Server server)
{
    QVariantMap options{{"dhcp"_s, server == Server::Dhcp || server == Server::OtherDhcp}};
    switch (server) {
    case Server::Nobody:
        break;
    case Server::Dhcp:
        options.insert("address"_s, "10.20.0.50"_s);
        options.insert("gateway"_s, "10.20.0.1"_s);
        break;
    case Server::OtherDhcp:
        options.insert("address"_s, "10.21.0.50"_s);
        options.insert("gateway"_s, "10.21.0.1"_s);
        break;
    case Server::Ipv6Router:
        options.insert("ipv6"_s, "fd00:20::50"_s);
        break;
    }
    Bench::instance().simulator.setCable(true, options);
    m_plugged = true;
    return true;
}

bool Lan::unplug()
{
    if (m_plugged) {
        Bench::instance().simulator.setCable(false);
        m_plugged = false;
    }
    return true;
}
