#pragma once

#include "SpeechRecord.h"
#include "Text.h"
#include <memory>
#include <QDBusConnection>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// What is around the daemon: the wired link with the network at its other end, ConnMan, and the speech
/// service. Either all real or all simulated, so that the same scenario shows whether the simulated ConnMan
/// behaves like the real one. A new one is as on a device just delivered: cable out, no DHCP server, no
/// ConnMan, nothing remembered, no address; only the speech service is there. There is no WLAN.
class Surroundings
{
public:
    Surroundings() = default;
    virtual ~Surroundings() = default;
    Q_DISABLE_COPY_MOVE(Surroundings)

    // What the DHCP server gives out, apart from an address.
    static QString gateway() { return "198.51.100.1"_s; }
    static QString netmask() { return "255.255.255.0"_s; }
    virtual QStringList offeredNameservers() const = 0;

    /// ConnMan's identifier of the wired service.
    virtual QString service() const = 0;

    virtual void plugCable() = 0;
    virtual void unplugCable() = 0;
    virtual void startDhcpServer() = 0;
    /// Returns when ConnMan has its bus name.
    virtual void startConnman() = 0;
    /// A crash. Returns when the bus has noticed.
    virtual void killConnman() = 0;
    /// An orderly end.
    virtual void stopConnman() = 0;
    /// What ConnMan itself says of the wired service.
    virtual QVariantMap connmanProperties() const = 0;

    // What is really set on the device, whoever says what about it.
    /// "address/prefix length" of every IPv4 address of the wired interface.
    virtual QStringList addresses() const = 0;
    virtual QString defaultGateway() const = 0;
    virtual QStringList nameservers() const = 0;
    virtual bool ipv6Enabled() const = 0;

    /// What the speech service has been asked to say.
    SpeechRecord &speech() { return m_speech; }
    virtual void setSpeechServicePresent(bool present) = 0;

private:
    SpeechRecord m_speech;
};

/// The surroundings that the test is linked with. `client` is a connection to the bus at `busAddress`.
std::unique_ptr<Surroundings> makeSurroundings(const QString &busAddress, const QDBusConnection &client);
