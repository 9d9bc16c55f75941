// ConnMan's orderly end and its start: what it says, what it keeps, what it reads anew.

#include "DeviceFixture.h"
#include "LogCapture.h"
#include "Suite.h"
#include <QDBusVariant>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString rawId = QStringLiteral("wifi_raw_managed_psk");
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
};

void LifeTest::orderlyEndTakesEverythingAway()
{
    const QString id = m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")},
                                                {QStringLiteral("security"), QStringLiteral("none")}});
    QVERIFY(!m_client->service(id, QStringLiteral("Connect")).isError);
    QVERIFY(m_client->waitForState(id, QStringLiteral("online")));
    m_client->clear();

    m_simulator->stopConnman();

    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged(@a(oa{sv}) [], [objectpath")));
    QCOMPARE(m_client->states(id).join(QLatin1Char(' ')), QStringLiteral("configuration disconnect idle"));
    const QStringList end{
        QStringLiteral("wifi PropertyChanged(\"Powered\", <false>)"),
        QStringLiteral("TechnologyRemoved(objectpath \"/net/connman/technology/wifi\")"),
        QStringLiteral("ethernet PropertyChanged(\"Powered\", <false>)"),
        QStringLiteral("TechnologyRemoved(objectpath \"/net/connman/technology/ethernet\")"),
        QStringLiteral("ServicesChanged(")};
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
    QVERIFY(m_client->waitForSignal(QStringLiteral("wifi PropertyChanged(\"Powered\", <true>)")));
    const QStringList added = m_client->signalLines(QStringLiteral("TechnologyAdded"));
    QCOMPARE(added.filter(QStringLiteral("\"Powered\": <false>")).size(), 2);
}

void LifeTest::erasedConnmanStartsWithWifiOff()
{
    const QString id = m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")},
                                                {QStringLiteral("security"), QStringLiteral("none")}});
    QVERIFY(!m_client->service(id, QStringLiteral("Connect")).isError);
    m_simulator->stopConnman();
    m_simulator->eraseConnman();
    m_client->clear();
    m_simulator->startConnman();
    QVERIFY(m_client->waitForSignal(QStringLiteral("ethernet PropertyChanged(\"Powered\", <true>)")));
    QCOMPARE(m_simulator->services(), QStringList());

    const Answer answer =
        m_client->technology(QStringLiteral("wifi"), QStringLiteral("SetProperty"),
                             {QStringLiteral("Powered"), QVariant::fromValue(QDBusVariant(true))});
    QVERIFY2(!answer.isError, qPrintable(answer.error));
    QVERIFY(m_client->waitForSignal(QStringLiteral("service/%1\", {\"Type\"").arg(id)));
    QCOMPARE(m_client->property(id, QStringLiteral("Favorite")), QStringLiteral("false"));
}

void LifeTest::runningConnmanIsNotErased()
{
    LogCapture log;
    m_simulator->addService(rawId);
    m_simulator->eraseConnman();
    QCOMPARE(log.takeCriticals(),
             QStringList{QStringLiteral("Simulator: \"eraseConnman\" failed: \"ConnMan is running\"")});
    QCOMPARE(m_simulator->services(), QStringList{rawId});
}

void LifeTest::startReadsTheHardwareAddress()
{
    m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")},
                             {QStringLiteral("security"), QStringLiteral("none")}});
    m_simulator->setHardwareAddress(QStringLiteral("02:a7:c4:03:1f:a7"));
    const QString id = QStringLiteral("wifi_%1_486f6d65_managed_none");
    QCOMPARE(m_simulator->services(), QStringList{id.arg(QStringLiteral("020000000200"))});
    m_simulator->restartConnman();
    QTRY_COMPARE(m_simulator->services(), QStringList{id.arg(QStringLiteral("02a7c4031fa7"))});
}

static const Suite<LifeTest> suite;
#include "LifeTest.moc"
