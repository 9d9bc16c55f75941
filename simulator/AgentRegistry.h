#pragma once

#include "Call.h"
#include "ConnmanWire.h"
#include <functional>
#include <memory>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QVector>

namespace simulator {

class BusService;
struct Timings;

/// What an agent answered: arguments, or the error's name and text. An agent that went away, was cancelled or
/// did not answer in time has an error too.
struct AgentReply
{
    QVariantList arguments;
    QString signature;
    ErrorReply error;

    bool isError() const { return !error.name.isEmpty(); }
};

/// The agents that clients registered with ConnMan, one per connection, and ConnMan's calls to them: one at a
/// time for each agent, the others wait in its queue.
class AgentRegistry : public QObject
{
    Q_OBJECT
public:
    using Answer = std::function<void(const AgentReply &)>;

    AgentRegistry(const BusService &bus, const Timings &timings, QObject *parent = nullptr);
    ~AgentRegistry() override;

    /// False when that client has one already.
    bool add(const QString &owner, const QString &path);
    /// False when that client has none.
    bool remove(const QString &owner);
    /// Forgets all of them, without a word to anybody.
    void clear();
    ObjectPathList paths() const;
    bool isEmpty() const { return m_agents.isEmpty(); }

    /// Calls the agent of `client`, or the default one where that has none. `subject` is what the call is
    /// about (a service's identifier), for cancel(). False when there is no agent at all; `answer` is not
    /// called then.
    bool call(const QString &client, const QString &subject, const QString &member,
              const QVariantList &arguments, const Answer &answer);
    /// Takes back the calls about `subject`: the agent that is busy with one is sent "Cancel", and each gets
    /// the answer net.connman.Error.OperationAborted.
    void cancel(const QString &subject);
    /// Tells every agent "Release" and forgets it, as ConnMan does when it ends in good order.
    void release();

private:
    struct Request;
    struct Agent;
    using AgentPtr = std::shared_ptr<Agent>;

    AgentPtr find(const QString &client) const;
    void sendNext(const AgentPtr &agent);
    void finish(const AgentPtr &agent, const AgentReply &reply);
    void drop(const AgentPtr &agent);
    void send(const Agent &agent, const QString &member) const;

    const BusService &m_bus;
    const Timings &m_timings;
    QVector<AgentPtr> m_agents; // the first one is the default
    std::unique_ptr<QDBusServiceWatcher> m_watcher;
};

} // namespace simulator
