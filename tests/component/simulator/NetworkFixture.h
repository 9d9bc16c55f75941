#pragma once

#include "DeviceFixture.h"
#include "TestAgent.h"

namespace simulator_test {

inline const QString ssid = QStringLiteral("Home");
inline const QString pskId = QStringLiteral("wifi_020000000200_486f6d65_managed_psk");
inline const QString openId = QStringLiteral("wifi_020000000200_486f6d65_managed_none");
inline const QString rightPassphrase = QStringLiteral("right passphrase");
inline const QString passphrase = QStringLiteral("Passphrase");

inline const QString failed = QStringLiteral("net.connman.Error.Failed: Input/output error");
inline const QString aborted = QStringLiteral("net.connman.Error.OperationAborted: Operation aborted");
inline const QString timedOut = QStringLiteral("net.connman.Error.OperationTimeout: Operation timeout");
inline const QString invalidArguments =
    QStringLiteral("net.connman.Error.InvalidArguments: Invalid arguments");

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

    std::unique_ptr<TestAgent> m_agent;

private:
    void arrive() override;
    void leave() override;
};

} // namespace simulator_test
