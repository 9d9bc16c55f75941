#pragma once

#include "ConnmanAgent.h"
#include "ConnmanFixture.h"
#include "ConnmanManager.h"
#include "Text.h"

#include <functional>
#include <memory>

/// Every test begins with Wi-Fi switched on, the registry of all services listening and the agent registered.
class ConnectingFixture : public test_support::ConnmanFixture
{
    Q_OBJECT

protected:
    using ServicePtr = std::shared_ptr<ConnmanService>;

    ConnmanManager &manager() { return *m_manager; }
    void endManager() { m_manager.reset(); }
    ConnmanAgent &agent() { return *m_agent; }
    /// Owns whatever refers to a test's locals.
    QObject *context() const { return m_context.get(); }

    /// Returns the network's identifier once the registry has it; an open one without a passphrase.
    QString addNetwork(const char *ssid, const char *passphrase = nullptr);
    /// Nullptr when the registry has no such service.
    ServicePtr service(const QString &identifier) const;
    /// Runs `action` once ConnMan has received the next Connect, from the event loop.
    void onConnect(const std::function<void()> &action);
    test_support::Fault delayConnect(const QString &identifier, int milliseconds);
    QStringList criticalLines() { return log().lines("ConnmanService"_s, QtCriticalMsg); }

protected slots:
    void init();
    void cleanup();

private:
    std::unique_ptr<ConnmanManager> m_manager;
    std::unique_ptr<ConnmanAgent> m_agent;
    std::unique_ptr<QObject> m_context;
};
