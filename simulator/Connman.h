#pragma once

#include "Addressing.h"
#include "AgentRegistry.h"
#include "BusService.h"
#include "Connector.h"
#include "Discovery.h"
#include "ManagerState.h"
#include "Neighbourhood.h"
#include "Provisioning.h"
#include "Radio.h"
#include "ServiceList.h"
#include "ServiceSettings.h"
#include "ServiceStates.h"
#include "TechnologyList.h"
#include "Timings.h"
#include <optional>

namespace simulator {

struct ConnmanInterface;

/// ConnMan on the bus: its manager, technologies and services.
class Connman : public BusService
{
    Q_OBJECT
public:
    Connman(const QString &address, Instruments instruments, const Timings &timings,
            QObject *parent = nullptr);

    Timings &timings() { return m_timings; }
    ServiceList &services() { return m_services; }
    TechnologyList &technologies() { return m_technologies; }
    AgentRegistry &agents() { return m_agents; }
    ManagerState &state() { return m_state; }
    Radio &radio() { return m_radio; }

    /// Puts an access point on the air; `atOnce`: seen without a scan. Returns its service's identifier.
    QString addNetwork(const QVariantMap &options, bool atOnce);
    /// False when there is no such network.
    bool removeNetwork(const QString &ssid);
    /// Takes its access point out of reach or back, which ConnMan notices at once. False when there is none.
    bool setInReach(const QString &ssid, bool isInReach);
    void setCable(const Cable &cable);
    void setAddressesServed(bool served);
    /// What the Wi-Fi card's address is from now on; ConnMan sees it when it starts the next time.
    void setHardwareAddress(const QString &address) { m_hardwareAddress = address; }
    /// Where it finds provisioning files.
    void setDirectory(const QString &path) { m_provisioning.setDirectory(path); }

    /// Ends in good order; agents are told so.
    void stop();
    /// Starts with what ConnMan keeps on disk.
    bool start();
    /// Takes what it keeps on disk away: not while it runs.
    void erase();

    QString introspect(const QString &path) const override;

protected:
    void handleCall(const Call &call) override;

private:
    static const ConnmanInterface managerInterface;
    static const ConnmanInterface technologyInterface;
    static const ConnmanInterface serviceInterface;
    /// Null where there is no object.
    const ConnmanInterface *interfaceAt(const QString &path) const;
    /// The names below a path that leads to objects; nothing where no path does.
    std::optional<QStringList> childrenOf(const QString &path) const;

    void getManagerProperties(const Call &call);
    void getTechnologies(const Call &call);
    void getServices(const Call &call);
    void getPeers(const Call &call);
    void registerAgent(const Call &call);
    void unregisterAgent(const Call &call);

    void getTechnologyProperties(const Call &call);
    void setTechnologyProperty(const Call &call);
    void scan(const Call &call);

    void getServiceProperties(const Call &call);
    void setServiceProperty(const Call &call);
    void connectService(const Call &call);
    void disconnectService(const Call &call);
    void removeService(const Call &call);

    TechnologyPtr technologyOf(const Call &call) const { return m_technologies.findByPath(call.path()); }
    ServicePtr serviceOf(const Call &call) const { return m_services.findByPath(call.path()); }

    void announceEverything();
    void forgetClients();
    void sayGoodbye();
    void forgetStates();
    void applyProvisioning();

    Timings m_timings;
    Neighbourhood m_neighbourhood;
    ServiceList m_services;
    TechnologyList m_technologies;
    AgentRegistry m_agents;
    ManagerState m_state;
    ServiceStates m_states;
    Discovery m_discovery;
    Addressing m_addressing;
    Connector m_connector;
    ServiceSettings m_settings;
    Radio m_radio;
    Provisioning m_provisioning;
    QString m_hardwareAddress;
    QStringList m_poweredAtStart; // technologies
    int m_networkCount = 0;
};

} // namespace simulator
