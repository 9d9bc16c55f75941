#pragma once

#include "SpeechRecord.h"
#include "Text.h"
#include <memory>
#include <QDBusConnection>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// What is around the daemon: the wired link with the network at its other end, ConnMan, and the speech
/// service. All real or all simulated, as the program is linked, so that the same scenario shows whether the
/// simulated ConnMan behaves like the real one. New ones are as on a device just delivered: cable out, no
/// DHCP server, no ConnMan, nothing remembered, no address; only the speech service is there. There is no
/// WLAN.
class Surroundings
{
public:
    /// `client` is a connection to the bus at `busAddress`.
    Surroundings(const QString &busAddress, const QDBusConnection &client);
    ~Surroundings();
    Q_DISABLE_COPY_MOVE(Surroundings)

    // What the DHCP server gives out, apart from an address.
    static QString gateway() { return "198.51.100.1"_s; }
    static QString netmask() { return "255.255.255.0"_s; }
    static QStringList offeredNameservers();

    static QString interface() { return "eth0"_s; }
    /// ConnMan's identifier of the wired service.
    QString service() const;

    void plugCable();
    void unplugCable();
    /// Returns when the server is ready to answer.
    void startDhcpServer();
    void stopDhcpServer();
    /// Whether ConnMan looks for the internet, and finds it.
    enum class OnlineCheck { Off, On };
    /// Returns when ConnMan has its bus name.
    void startConnman(OnlineCheck onlineCheck = OnlineCheck::Off);
    /// A crash: no farewell to anybody, addresses and routes stay as they are. Returns when the bus has
    /// noticed.
    void killConnman();
    /// An orderly end, which takes the link down.
    void stopConnman();
    /// What ConnMan itself says of the wired service; empty when it has none.
    QVariantMap connmanProperties() const;

    // What is really set on the device, whoever says what about it.
    /// "address/prefix length" of every IPv4 address of the wired interface.
    QStringList addresses() const;
    QString defaultGateway() const;
    QStringList nameservers() const;
    bool ipv6Enabled() const;

    /// What the speech service has been asked to say.
    const test_support::SpeechRecord &speech() const { return m_speech; }
    void setSpeechServicePresent(bool present);

private:
    struct Parts;

    test_support::SpeechRecord m_speech;
    std::unique_ptr<Parts> m_parts;
};
