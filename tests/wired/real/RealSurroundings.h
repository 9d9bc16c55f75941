#pragma once

#include "SpeechService.h"
#include "Surroundings.h"
#include "Text.h"
#include "WiredLink.h"

/// The real ConnMan on a real cable. Only inside the private world.
class RealSurroundings : public Surroundings
{
public:
    explicit RealSurroundings(const QDBusConnection &bus);

    QStringList offeredNameservers() const override { return WiredLink::nameservers(); }
    QString service() const override { return WiredLink::service(); }
    void plugCable() override { m_link.plugCable(); }
    void unplugCable() override { m_link.unplugCable(); }
    void startDhcpServer() override { m_link.startDhcpServer(); }
    void startConnman() override { m_link.startConnman(); }
    void startConnmanWithOnlineCheck() { m_link.startConnman("connman-online.conf"_s); }
    void killConnman() override { m_link.killConnman(); }
    void stopConnman() override { m_link.stopConnman(); }
    QVariantMap connmanProperties() const override { return m_link.connmanProperties(); }
    QStringList addresses() const override;
    QString defaultGateway() const override;
    QStringList nameservers() const override;
    bool ipv6Enabled() const override;
    void setSpeechServicePresent(bool present) override { m_speechService.setPresent(present); }

private:
    SpeechService m_speechService;
    WiredLink m_link;
};
