#pragma once

#include "SimulatorClient.h"
#include "Surroundings.h"

/// The simulated ConnMan and speech service.
class SimulatedSurroundings : public Surroundings
{
public:
    explicit SimulatedSurroundings(const QString &busAddress);

    QStringList offeredNameservers() const override { return {gateway()}; }
    QString service() const override;
    void plugCable() override;
    void unplugCable() override;
    void startDhcpServer() override;
    void startConnman() override;
    void killConnman() override;
    void stopConnman() override;
    QVariantMap connmanProperties() const override;
    QStringList addresses() const override;
    QString defaultGateway() const override;
    QStringList nameservers() const override;
    bool ipv6Enabled() const override;
    void setSpeechServicePresent(bool present) override;

private:
    void setCable(bool plugged);
    QVariantMap ipv4() const;

    mutable test_support::SimulatorClient m_simulator;
    bool m_isPlugged = false;
    bool m_hasDhcpServer = false;
    // An orderly end takes the link down, which the simulator has no picture of.
    bool m_isLinkDown = false;
};
