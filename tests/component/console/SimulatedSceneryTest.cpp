// The console's commands that change the world around the printer.
#include "Feed.h"
#include "PrivateBus.h"
#include "Scenery.h"
#include "Suite.h"
#include "Text.h"
#include "Words.h"
#include <memory>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QTest>

class SimulatedSceneryTest : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void commandsChangeTheNetworks_data();
    void commandsChangeTheNetworks();

private:
    bool type(const QString &line);
    QStringList services() const;

    test_support::PrivateBus m_bus;
    QDBusConnection m_connection{QDBusConnection::connectToBus(m_bus.address(), "scenery test"_s)};
    Feed m_feed;
    std::unique_ptr<Scenery> m_scenery;
};

bool SimulatedSceneryTest::type(const QString &line)
{
    return carryOut(m_scenery->commands(m_feed), splitWords(line).value());
}

QStringList SimulatedSceneryTest::services() const
{
    const QString simulator = "com.tactora.Simulator"_s;
    const QDBusReply<QStringList> reply =
        m_connection.call(QDBusMessage::createMethodCall(simulator, "/simulator"_s, simulator, "services"_s));
    return reply.value();
}

void SimulatedSceneryTest::init()
{
    m_scenery.reset(); // its bus names are taken until then
    m_scenery = std::make_unique<Scenery>(m_bus.address(), m_connection);
    QVERIFY(m_scenery->isReady());
}

void SimulatedSceneryTest::commandsChangeTheNetworks_data()
{
    QTest::addColumn<QString>("lines");
    QTest::addColumn<QStringList>("networks");
    const auto row = [](const char *name, const char *lines, const QStringList &networks) {
        QTest::newRow(name) << QString::fromLatin1(lines) << networks;
    };
    const auto wifi = [](const char *rest) {
        return QStringList{"wifi_020000000200_"_s + QLatin1String(rest)};
    };
    const QStringList home = wifi("486f6d65_managed_psk");
    row("open", "add Home", wifi("486f6d65_managed_none"));
    row("with a passphrase", "add Home secretsecret", home);
    row("hidden", "add-hidden Home secretsecret", wifi("hidden_managed_psk"));
    row("enterprise", "add-enterprise Home me secret", wifi("486f6d65_managed_ieee8021x"));
    row("WPS", "add-wps Home 12345670", home);
    row("gone", "add Home; remove Home", {});
    row("out of reach", "add Home secretsecret; reach Home out", {});
    row("back in reach", "add Home secretsecret; reach Home out; reach Home in", home);
    row("cable", "cable in", {"ethernet_020000000100_cable"_s});
    row("cable pulled out", "cable in; cable out", {});
}

void SimulatedSceneryTest::commandsChangeTheNetworks()
{
    QFETCH(const QString, lines);
    QFETCH(const QStringList, networks);
    for (const QString &line : lines.split("; "_s)) {
        QVERIFY2(type(line), qPrintable(line));
    }
    QCOMPARE(services(), networks);
}

static const Suite<SimulatedSceneryTest> simulatedSceneryTest;
#include "SimulatedSceneryTest.moc"
