#pragma once

#include "DeviceFixture.h"
#include "FakeAgent.h"
#include "Text.h"

namespace simulator_test {

inline const QString ssid = "Home"_s;
inline const QString rightPassphrase = "right passphrase"_s;
inline const QString passphrase = "Passphrase"_s;

inline const QString failed = "net.connman.Error.Failed: Input/output error"_s;
inline const QString aborted = "net.connman.Error.OperationAborted: Operation aborted"_s;
inline const QString timedOut = "net.connman.Error.OperationTimeout: Operation timeout"_s;

QVariantMap with(const QString &key, const QVariant &value);
/// The line of RequestInput for a service, as the agent notes it.
QString request(const QString &identifier, const char *fields);
inline constexpr char pskFields[] =
    "\"Passphrase\": <{\"Type\": <\"psk\">, \"Requirement\": <\"mandatory\">}>";

/// Rows of an agent's error ("refusal") and ConnMan's answer to Connect ("error").
void addAgentRefusals();

/// The simulated device with a network "Home" and a registered agent.
class NetworkFixture : public DeviceFixture
{
    Q_OBJECT

protected:
    /// "Home" with the right passphrase unless the options say otherwise; announced, and the signals
    /// forgotten.
    QString addNetwork(QVariantMap options = {});
    Answer connectService(const QString &identifier) const;
    Answer disconnectService(const QString &identifier) const;

    std::unique_ptr<FakeAgent> m_agent;

private:
    void arrive() override;
    void leave() override;
};

} // namespace simulator_test
