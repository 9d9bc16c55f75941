#pragma once

#include "ChildProcess.h"
#include "Text.h"
#include <QDBusConnection>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// The device's wired link and the two at its ends: the network with its DHCP server, and the real ConnMan. A
/// new one is as on a device just delivered: cable out, nobody running, nothing remembered, no address.
class WiredLink
{
public:
    // What the DHCP server gives out.
    static QString gateway() { return "198.51.100.1"_s; }
    static QString firstAddress() { return "198.51.100.50"_s; }
    static QString lastAddress() { return "198.51.100.60"_s; }
    static QString netmask() { return "255.255.255.0"_s; }
    static QStringList nameservers() { return {"198.51.100.2"_s, "198.51.100.3"_s}; }

    static QString interface() { return "eth0"_s; }
    /// ConnMan's identifier of the wired service.
    static QString service();

    /// `bus`: a connection to the system bus that ConnMan uses.
    explicit WiredLink(QDBusConnection bus);

    void plugCable();
    void unplugCable();

    /// Returns when the server is ready to answer.
    void startDhcpServer();
    void stopDhcpServer() { test_support::stopProcess(m_dhcpServer); }

    /// Returns when ConnMan has its bus name. `mainConf` is the configuration file's name in this directory.
    void startConnman(const QString &mainConf = "connman.conf"_s);
    bool isConnmanRunning() const { return m_connman.state() == QProcess::Running; }
    /// A crash: no farewell to anybody, addresses and routes stay as they are. Returns when the bus has
    /// noticed.
    void killConnman();
    /// An orderly end, which takes the link down.
    void stopConnman() { test_support::stopProcess(m_connman); }
    /// What ConnMan itself says of the wired service; empty when it has none.
    QVariantMap connmanProperties() const;

private:
    void waitForLink();
    bool connmanIsOnTheBus() const;

    QDBusConnection m_bus;
    bool m_isPlugged = false;
    test_support::ChildProcess m_dhcpServer;
    test_support::ChildProcess m_connman;
};
