#pragma once

#include "AgentRegistry.h"
#include "Credentials.h"
#include "Service.h"
#include <optional>
#include <QObject>
#include <QTimer>

namespace simulator {

class Addressing;
class Discovery;
class ServiceList;
class ServiceStates;
class Neighbourhood;
struct Timings;

/// How services get connected and disconnected: ConnMan's attempts, their time, the agent's part in them.
class Connector : public QObject
{
    Q_OBJECT
public:
    struct Parts
    {
        ServiceList &services;
        ServiceStates &states;
        Addressing &addressing;
        Discovery &discovery;
        AgentRegistry &agents;
        const Neighbourhood &neighbourhood;
        const Timings &timings;
    };
    explicit Connector(Parts parts, QObject *parent = nullptr);

    /// The client's Connect: answered when the service is connected or the attempt has failed.
    void connectService(const ServicePtr &service, const Call &call);
    /// Nothing when the service is being disconnected, otherwise why it cannot be.
    std::optional<ErrorReply> disconnectService(const ServicePtr &service);
    /// Forgets the network and its credentials.
    std::optional<ErrorReply> removeService(const ServicePtr &service);
    /// Connects what is to be connected by itself, once the event loop runs again.
    void autoConnect();
    /// A provisioning file came, which makes the network known, or went, which forgets it.
    void provision(const ServicePtr &service);
    void unprovision(const ServicePtr &service);
    /// Ends all attempts without a word, as a crash does.
    void abandon();

private:
    std::optional<ErrorReply> start(const ServicePtr &service, ConnectReason reason);
    void forget(const ServicePtr &service);
    void freeInterface(const ServicePtr &service);
    void associate(const ServicePtr &service);
    void failToAssociate(const ServicePtr &service, const QString &error);
    void giveUp(const ServicePtr &service);
    void complete(const ServicePtr &service);

    std::optional<ErrorReply> askAgent(const ServicePtr &service);
    void takeAnswer(const ServicePtr &service, const AgentReply &reply,
                    const std::optional<Call> &hiddenConnect);
    void useCredentials(const ServicePtr &service, const Credentials &credentials);
    void refuseCredentials(const ServicePtr &service);
    void endRequest(const ServicePtr &service, const ErrorReply &error);
    void searchHidden(const ServicePtr &service, const Credentials &credentials,
                      const std::optional<Call> &connect);
    void joinFound(const ServicePtr &service, const Credentials &credentials,
                   const std::optional<Call> &connect);
    bool reportError(const ServicePtr &service, const AgentRegistry::Answer &answer);
    QString client(const Service &service) const;

    static bool mayConnectByItself(const Service &service);
    void runAutoConnect();

    Parts m_parts;
    int m_openRequests = 0;
    QTimer m_autoConnect;
};

} // namespace simulator
