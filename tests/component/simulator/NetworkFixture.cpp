#include "NetworkFixture.h"
#include "Text.h"

#include <QDBusObjectPath>
#include <QTest>

namespace simulator_test {

QVariantMap with(const QString &key, const QVariant &value)
{
    return {{key, value}};
}

QString request(const QString &identifier, const char *fields)
{
    return "RequestInput(objectpath \"/net/connman/service/%1\", {%2})"_s.arg(identifier,
                                                                              QLatin1String(fields));
}

void addAgentRefusals()
{
    QTest::addColumn<QString>("refusal");
    QTest::addColumn<QString>("error");
    QTest::newRow("cancelled by the user") << "net.connman.Agent.Error.Canceled"_s << aborted;
    QTest::newRow("any other") << "org.freedesktop.DBus.Error.InvalidArgs"_s << timedOut;
    QTest::newRow("browser") << "net.connman.Agent.Error.LaunchBrowser"_s << timedOut;
}

QString NetworkFixture::addNetwork(QVariantMap options)
{
    if (!options.contains("ssid"_s)) {
        options["ssid"_s] = ssid;
    }
    if (!options.contains("passphrase"_s)) {
        options["passphrase"_s] = rightPassphrase;
    }
    QString identifier = m_simulator->addNetwork(options);
    m_client->waitForSignal(identifier);
    m_client->clear();
    return identifier;
}

Answer NetworkFixture::connectService(const QString &identifier) const
{
    return m_client->service(identifier, "Connect"_s);
}

Answer NetworkFixture::disconnectService(const QString &identifier) const
{
    return m_client->service(identifier, "Disconnect"_s);
}

void NetworkFixture::arrive()
{
    m_agent = std::make_unique<FakeAgent>(m_client->connection());
    const Answer answer =
        m_client->manager("RegisterAgent"_s, {QVariant::fromValue(QDBusObjectPath(FakeAgent::path))});
    QVERIFY2(!answer.isError, qPrintable(answer.error));
}

void NetworkFixture::leave()
{
    m_agent.reset();
}

} // namespace simulator_test
