#include "AgentRegistry.h"

#include "BusService.h"
#include "ConnmanErrors.h"
#include "Timings.h"
#include <algorithm>
#include <deque>
#include <functional>
#include <optional>
#include <QDBusPendingCallWatcher>

namespace simulator {

struct AgentRegistry::Request
{
    QString subject;
    QString member;
    QVariantList arguments;
    Answer answer;
};

struct AgentRegistry::Agent
{
    QString owner;
    QString path;
    std::deque<Request> queue;
    std::optional<Request> pending;
    std::unique_ptr<QDBusPendingCallWatcher> watcher;
};

namespace {
AgentReply aborted()
{
    return {{}, {}, error::operationAborted};
}

QDBusMessage agentCall(const QString &owner, const QString &path, const QString &member)
{
    return QDBusMessage::createMethodCall(owner, path, connman::agentInterface, member);
}
} // namespace

AgentRegistry::AgentRegistry(const BusService &bus, const Timings &timings, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_timings(timings)
{
}

AgentRegistry::~AgentRegistry() = default;

bool AgentRegistry::add(const QString &owner, const QString &path)
{
    const bool known = std::any_of(m_agents.cbegin(), m_agents.cend(),
                                   [&owner](const AgentPtr &agent) { return agent->owner == owner; });
    if (known) {
        return false;
    }
    if (m_watcher == nullptr) {
        m_watcher = std::make_unique<QDBusServiceWatcher>();
        m_watcher->setConnection(m_bus.connection());
        m_watcher->setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
        connect(m_watcher.get(), &QDBusServiceWatcher::serviceUnregistered, this, &AgentRegistry::remove);
    }
    m_watcher->addWatchedService(owner);
    auto agent = std::make_shared<Agent>();
    agent->owner = owner;
    agent->path = path;
    m_agents.append(agent);
    return true;
}

bool AgentRegistry::remove(const QString &owner)
{
    const auto found = std::find_if(m_agents.begin(), m_agents.end(),
                                    [&owner](const AgentPtr &agent) { return agent->owner == owner; });
    if (found == m_agents.end()) {
        return false;
    }
    const AgentPtr agent = *found;
    m_agents.erase(found);
    m_watcher->removeWatchedService(owner);
    drop(agent);
    return true;
}

void AgentRegistry::clear()
{
    m_agents.clear();
    m_watcher.reset();
}

ObjectPathList AgentRegistry::paths() const
{
    ObjectPathList paths;
    for (const AgentPtr &agent : m_agents) {
        paths.append(QDBusObjectPath(agent->path));
    }
    return paths;
}

bool AgentRegistry::call(const QString &client, const QString &subject, const QString &member,
                         const QVariantList &arguments, const Answer &answer)
{
    const AgentPtr agent = find(client);
    if (agent == nullptr) {
        return false;
    }
    agent->queue.push_back({subject, member, arguments, answer});
    sendNext(agent);
    return true;
}

void AgentRegistry::cancel(const QString &subject)
{
    const QVector<AgentPtr> agents = m_agents; // an answer may register or remove agents
    for (const AgentPtr &agent : agents) {
        const auto isAbout = [&subject](const Request &request) { return request.subject == subject; };
        const auto kept =
            std::stable_partition(agent->queue.begin(), agent->queue.end(), std::not_fn(isAbout));
        const std::deque<Request> cancelled(kept, agent->queue.end());
        agent->queue.erase(kept, agent->queue.end());
        for (const Request &request : cancelled) {
            request.answer(aborted());
        }
        if (agent->pending && isAbout(*agent->pending)) {
            send(*agent, QStringLiteral("Cancel"));
            finish(agent, aborted());
        }
    }
}

void AgentRegistry::release()
{
    for (const AgentPtr &agent : qAsConst(m_agents)) {
        send(*agent, QStringLiteral("Release"));
    }
    clear();
}

AgentRegistry::AgentPtr AgentRegistry::find(const QString &client) const
{
    for (const AgentPtr &agent : m_agents) {
        if (agent->owner == client) {
            return agent;
        }
    }
    return m_agents.isEmpty() ? nullptr : m_agents.first();
}

void AgentRegistry::sendNext(const AgentPtr &agent)
{
    if (agent->pending || agent->queue.empty()) {
        return;
    }
    agent->pending = std::move(agent->queue.front());
    agent->queue.pop_front();
    QDBusMessage message = agentCall(agent->owner, agent->path, agent->pending->member);
    message.setArguments(agent->pending->arguments);
    auto watcher =
        std::make_unique<QDBusPendingCallWatcher>(m_bus.connection().asyncCall(message, m_timings.agent));
    connect(watcher.get(), &QDBusPendingCallWatcher::finished, this,
            [this, weak = std::weak_ptr(agent)](QDBusPendingCallWatcher *finished) {
                const QDBusMessage reply = finished->reply();
                const bool isError = reply.type() == QDBusMessage::ErrorMessage;
                finish(weak.lock(),
                       {isError ? QVariantList() : reply.arguments(), reply.signature(),
                        isError ? ErrorReply{reply.errorName(), reply.errorMessage()} : ErrorReply{}});
            });
    agent->watcher = std::move(watcher);
}

void AgentRegistry::finish(const AgentPtr &agent, const AgentReply &reply)
{
    const Request request = std::move(*agent->pending);
    agent->pending.reset();
    // The watcher may be the one whose signal led here.
    agent->watcher->disconnect(this);
    agent->watcher.release()->deleteLater();
    request.answer(reply);
    sendNext(agent);
}

// An agent that goes is told so ("Cancel") if it was busy; if its client is gone nobody hears it.
void AgentRegistry::drop(const AgentPtr &agent)
{
    const std::deque<Request> queue = std::move(agent->queue);
    agent->queue.clear();
    if (agent->pending) {
        send(*agent, QStringLiteral("Cancel"));
        finish(agent, aborted());
    }
    for (const Request &request : queue) {
        request.answer(aborted());
    }
}

void AgentRegistry::send(const Agent &agent, const QString &member) const
{
    m_bus.connection().send(agentCall(agent.owner, agent.path, member));
}

} // namespace simulator
