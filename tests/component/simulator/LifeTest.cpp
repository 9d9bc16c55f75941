// ConnMan's end, orderly or not, and its start: what it says, what it keeps, what it reads anew. The device's
// other services come and go by name.

#include "DeviceFixture.h"
#include "FakeAgent.h"
#include "LogCapture.h"
#include "Suite.h"
#include "Text.h"
#include <QDBusVariant>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
} // namespace

class LifeTest : public DeviceFixture
{
    Q_OBJECT

private slots:
    void orderlyEndTakesEverythingAway();
    void startSwitchesOnWhatWasOn();
    void erasedConnmanStartsWithWifiOff();
    void runningConnmanIsNotErased();
    void startReadsTheHardwareAddress();

    void leavingEndsCallsUnderWay();
    void comingBackForgetsAgentsAndKeepsServices();
    void servicesComeAndGoByName_data();
    void servicesComeAndGoByName();
    void restartForgetsWhatOnlyLivedInMemory();
    void restartReleasesAgents();
    void restartKeepsFavouritesOnTheAir();
};

void LifeTest::orderlyEndTakesEverythingAway()
{
    const QString id = m_simulator->addNetwork({{"ssid"_s, "Home"_s}, {"security"_s, "none"_s}});
    QVERIFY(!m_client->service(id, "Connect"_s).isError);
    QVERIFY(m_client->waitForState(id, "online"_s));
    m_client->clear();

    m_simulator->stopConnman();

    QVERIFY(m_client->waitForSignal("ServicesChanged(@a(oa{sv}) [], [objectpath"_s));
    QCOMPARE(m_client->states(id).join(QLatin1Char(' ')), "configuration disconnect idle"_s);
    const QStringList end{"wifi PropertyChanged(\"Powered\", <false>)"_s,
                          "TechnologyRemoved(objectpath \"/net/connman/technology/wifi\")"_s,
                          "ethernet PropertyChanged(\"Powered\", <false>)"_s,
                          "TechnologyRemoved(objectpath \"/net/connman/technology/ethernet\")"_s,
                          "ServicesChanged("_s};
    const QStringList lines = m_client->signalLines().mid(m_client->signalLines().size() - end.size());
    for (int index = 0; index < end.size(); ++index) {
        QVERIFY2(lines.value(index).contains(end.at(index)), qPrintable(lines.join(QLatin1Char('\n'))));
    }
}

void LifeTest::startSwitchesOnWhatWasOn()
{
    m_simulator->stopConnman();
    m_client->clear();
    m_simulator->startConnman();
    QVERIFY(m_client->waitForSignal("wifi PropertyChanged(\"Powered\", <true>)"_s));
    const QStringList added = m_client->signalLines("TechnologyAdded"_s);
    QCOMPARE(added.filter("\"Powered\": <false>"_s).size(), 2);
}

void LifeTest::erasedConnmanStartsWithWifiOff()
{
    const QString id = m_simulator->addNetwork({{"ssid"_s, "Home"_s}, {"security"_s, "none"_s}});
    QVERIFY(!m_client->service(id, "Connect"_s).isError);
    m_simulator->stopConnman();
    m_simulator->eraseConnman();
    m_client->clear();
    m_simulator->startConnman();
    QVERIFY(m_client->waitForSignal("ethernet PropertyChanged(\"Powered\", <true>)"_s));
    QCOMPARE(m_simulator->services(), QStringList());

    const Answer answer = m_client->technology("wifi"_s, "SetProperty"_s,
                                               {"Powered"_s, QVariant::fromValue(QDBusVariant(true))});
    QVERIFY2(!answer.isError, qPrintable(answer.error));
    QVERIFY(m_client->waitForSignal("service/%1\", {\"Type\""_s.arg(id)));
    QCOMPARE(m_client->property(id, "Favorite"_s), "false"_s);
}

void LifeTest::runningConnmanIsNotErased()
{
    LogCapture log;
    m_simulator->addService(rawId);
    m_simulator->eraseConnman();
    QCOMPARE(log.takeCriticals(), QStringList{"Simulator: \"ConnMan is running\""_s});
    QCOMPARE(m_simulator->services(), QStringList{rawId});
}

void LifeTest::startReadsTheHardwareAddress()
{
    m_simulator->addNetwork({{"ssid"_s, "Home"_s}, {"security"_s, "none"_s}});
    m_simulator->setHardwareAddress("02:a7:c4:03:1f:a7"_s);
    const QString id = "wifi_%1_486f6d65_managed_none"_s;
    QCOMPARE(m_simulator->services(), QStringList{id.arg("020000000200"_s)});
    m_simulator->restartConnman();
    QTRY_COMPARE(m_simulator->services(), QStringList{id.arg("02a7c4031fa7"_s)});
}

void LifeTest::leavingEndsCallsUnderWay()
{
    m_simulator->addService(rawId, {{"Favorite"_s, true}});
    m_simulator->setTiming("association"_s, 60000);
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(rawId, "Connect"_s);
    QVERIFY(m_client->waitForState(rawId, "association"_s));
    m_simulator->setPresent(connman, false);
    const Answer answer = pending->wait();
    QVERIFY2(answer.error.startsWith("org.freedesktop.DBus.Error.NoReply"_s), qPrintable(answer.error));
}

void LifeTest::comingBackForgetsAgentsAndKeepsServices()
{
    m_simulator->addService(rawId);
    m_client->manager("RegisterAgent"_s, {QVariant::fromValue(QDBusObjectPath("/an/agent"))});
    m_simulator->setPresent(connman, false);
    m_client->clear();
    m_simulator->setPresent(connman, true);
    QVERIFY(m_client->waitForSignal("ServicesChanged([(objectpath "
                                    "\"/net/connman/service/wifi_raw_managed_psk\", {\"Type\""_s));
    QCOMPARE(m_client->signalLines("TechnologyAdded"_s).size(), 2);
    QCOMPARE(m_simulator->agents(), QList<QDBusObjectPath>());
    QCOMPARE(m_simulator->services(), QStringList{rawId});
}

void LifeTest::servicesComeAndGoByName_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : {connman, "com.tactora.ConfigurationManager"_s, "com.tactora.Speech"_s}) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

void LifeTest::servicesComeAndGoByName()
{
    QFETCH(QString, name);
    QVERIFY(m_client->isOnTheBus(name));
    m_simulator->setPresent(name, false);
    QVERIFY(m_client->waitUntilGone(name));
    m_simulator->setPresent(name, true);
    QVERIFY(m_client->isOnTheBus(name));
}

void LifeTest::restartForgetsWhatOnlyLivedInMemory()
{
    m_simulator->addService(rawId, {{"Favorite"_s, true}, {"State"_s, "ready"_s}});
    m_simulator->addService(otherId);
    m_simulator->setTiming("autoConnect"_s, -1);
    m_simulator->restartConnman();
    QCOMPARE(m_simulator->services(), QStringList{rawId});
    QCOMPARE(m_client->property(rawId, "State"_s), "\"idle\""_s);
    QCOMPARE(m_client->property(rawId, "Favorite"_s), "true"_s);
}

void LifeTest::restartReleasesAgents()
{
    FakeAgent agent(m_client->connection());
    m_client->manager("RegisterAgent"_s, {QVariant::fromValue(QDBusObjectPath(FakeAgent::path))});
    m_simulator->restartConnman();
    QVERIFY(agent.waitForLine("Release()"_s));
    QCOMPARE(m_simulator->agents(), QList<QDBusObjectPath>());
}

void LifeTest::restartKeepsFavouritesOnTheAir()
{
    const QString id = m_simulator->addNetwork({{"ssid"_s, "Home"_s}, {"security"_s, "none"_s}});
    QVERIFY(!m_client->service(id, "Connect"_s).isError);
    QVERIFY(m_client->waitForState(id, "online"_s));
    m_client->clear();
    m_simulator->restartConnman();
    // Known and in reach, so it is connected again by itself.
    QVERIFY(m_client->waitForState(id, "online"_s));
    QCOMPARE(m_client->property(id, "Favorite"_s), "true"_s);
}

static const Suite<LifeTest> lifeTest;
#include "LifeTest.moc"
