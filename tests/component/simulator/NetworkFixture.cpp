#include "NetworkFixture.h"

#include <QDBusObjectPath>
#include <QTest>

namespace simulator_test {

QVariantMap with(const QString &key, const QVariant &value)
{
    return {{key, value}};
}

QString request(const QString &identifier, const char *fields)
{
    return QStringLiteral("RequestInput(objectpath \"/net/connman/service/%1\", {%2})")
        .arg(identifier, QLatin1String(fields));
}

void addAgentRefusals()
{
    QTest::addColumn<QString>("refusal");
    QTest::addColumn<QString>("error");
    QTest::newRow("cancelled by the user") << QStringLiteral("net.connman.Agent.Error.Canceled") << aborted;
    QTest::newRow("any other") << QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs") << timedOut;
    QTest::newRow("browser") << QStringLiteral("net.connman.Agent.Error.LaunchBrowser") << timedOut;
}

QString NetworkFixture::addNetwork(QVariantMap options)
{
    if (!options.contains(QStringLiteral("ssid"))) {
        options[QStringLiteral("ssid")] = ssid;
    }
    if (!options.contains(QStringLiteral("passphrase"))) {
        options[QStringLiteral("passphrase")] = rightPassphrase;
    }
    QString identifier = m_simulator->addNetwork(options);
    m_client->waitForSignal(identifier);
    m_client->clear();
    return identifier;
}

Answer NetworkFixture::connectService(const QString &identifier) const
{
    return m_client->service(identifier, QStringLiteral("Connect"));
}

Answer NetworkFixture::disconnectService(const QString &identifier) const
{
    return m_client->service(identifier, QStringLiteral("Disconnect"));
}

void NetworkFixture::arrive()
{
    m_agent = std::make_unique<TestAgent>(m_client->connection());
    const Answer answer = m_client->manager(QStringLiteral("RegisterAgent"),
                                            {QVariant::fromValue(QDBusObjectPath(TestAgent::path))});
    QVERIFY2(!answer.isError, qPrintable(answer.error));
}

void NetworkFixture::leave()
{
    m_agent.reset();
}

} // namespace simulator_test
