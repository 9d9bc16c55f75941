#pragma once

#include "ChildProcess.h"
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
    static QString gateway() { return QStringLiteral("198.51.100.1"); }
    static QString firstAddress() { return QStringLiteral("198.51.100.50"); }
    static QString lastAddress() { return QStringLiteral("198.51.100.60"); }
    static QString netmask() { return QStringLiteral("255.255.255.0"); }
    static QStringList nameservers()
    {
        return {QStringLiteral("198.51.100.2"), QStringLiteral("198.51.100.3")};
    }

    static QString interface() { return QStringLiteral("eth0"); }
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
    void startConnman(const QString &mainConf = QStringLiteral("connman.conf"));
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
