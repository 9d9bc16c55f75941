#pragma once

#include "ConnmanAgent.h"
#include "ConnmanAgentDBus.h"
#include "LogCapture.h"
#include "PrivateBus.h"

#include <memory>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

/// Every test begins with a new agent on a bus of the tests' own, and a second connection to that bus that
/// calls it as ConnMan does.
class AgentFixture : public QObject
{
    Q_OBJECT

protected:
    AgentFixture();
    ~AgentFixture() override;

    ConnmanAgent &agent() { return *m_agent; }
    const ConnmanAgentDBus &adaptor() const { return *m_adaptor; }
    test_support::LogCapture &log() { return *m_log; }
    /// What the agent has logged, as lines, in order.
    QStringList agentLines() const;

    /// Calls the agent over D-Bus and returns its answer, the event loop running meanwhile.
    QDBusMessage call(const QString &member, const QVariantList &arguments = {});
    QDBusMessage requestInput(const QVariantMap &fields);

    /// The one dictionary that was answered; the test has failed when it was anything else.
    static QVariantMap answer(const QDBusMessage &reply);
    /// "name: message" of an error; the answer's type when it was none.
    static QString error(const QDBusMessage &reply);
    static QString invalidArgs(const QString &message);

    static QVariant servicePath();

private slots:
    void init();
    void cleanup();

private:
    test_support::PrivateBus m_bus;
    QDBusConnection m_connman;
    std::unique_ptr<ConnmanAgent> m_agent;
    ConnmanAgentDBus *m_adaptor = nullptr;
    std::unique_ptr<test_support::LogCapture> m_log;
};
