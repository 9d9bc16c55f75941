// What can be made to go wrong: every kind of fault, and services that leave and come back.

#include "DeviceFixture.h"
#include "EventWait.h"
#include "Suite.h"
#include "TestAgent.h"
#include <QDBusConnectionInterface>
#include <QDBusServiceWatcher>
#include <QElapsedTimer>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString manager = QStringLiteral("net.connman.Manager");
const QString service = QStringLiteral("net.connman.Service");
const QString connman = QStringLiteral("net.connman");
const QString configurationManager = QStringLiteral("com.tactora.ConfigurationManager");
const QString speech = QStringLiteral("com.tactora.Speech");
const QString getServices = QStringLiteral("GetServices");
const QString rawId = QStringLiteral("wifi_raw_managed_psk");
const QString otherId = QStringLiteral("wifi_other_managed_psk");
const QString noReply = QStringLiteral("org.freedesktop.DBus.Error.NoReply");
} // namespace

class FaultTest : public DeviceFixture
{
    Q_OBJECT

private slots:
    void errorIsAnsweredWithoutEffect();
    void replyIsAnsweredWithoutEffect();
    void replyKeepsAnyType();
    void delayedCallHasItsEffectLater();
    void lateErrorLetsOtherCallsGoFirst();
    void neverIsNotAnsweredAndHasNoEffect();
    void vanishDropsTheConnectionInTheMiddleOfTheCall();
    void vanishedServiceIsBroughtBack();
    void countLimitsHowOftenItFires();
    void countZeroFiresForEver();
    void pathLimitsWhereItFires();
    void olderFaultFiresFirst();
    void clearedFaultFiresNoMore();
    void faultedCallIsRecorded();
    void speechAndConfigurationCanFailToo_data();
    void speechAndConfigurationCanFailToo();
    void faultThatDidNotFireFailsTheTest();

    void leavingEndsCallsUnderWay();
    void comingBackForgetsAgentsAndKeepsServices();
    void servicesComeAndGoByName_data();
    void servicesComeAndGoByName();
    void restartForgetsWhatOnlyLivedInMemory();
    void restartReleasesAgents();
    void restartKeepsFavouritesOnTheAir();

private:
    bool isOnTheBus(const QString &name) const
    {
        return m_client->connection().interface()->isServiceRegistered(name);
    }
    bool waitUntilGone(const QString &name) const;
};

bool FaultTest::waitUntilGone(const QString &name) const
{
    QDBusServiceWatcher watcher(name, m_client->connection(), QDBusServiceWatcher::WatchForUnregistration);
    return waitUntil([this, &name] { return !isOnTheBus(name); });
}

void FaultTest::errorIsAnsweredWithoutEffect()
{
    m_simulator->addService(rawId, {{QStringLiteral("Favorite"), true}});
    const Fault fault =
        m_simulator->injectFault(service, QStringLiteral("Remove"),
                                 FaultKind::error(QStringLiteral("an.Error"), QStringLiteral("some text")));
    QCOMPARE(m_client->service(rawId, QStringLiteral("Remove")).text(),
             QStringLiteral("an.Error: some text"));
    QCOMPARE(m_client->property(rawId, QStringLiteral("Favorite")), QStringLiteral("true"));
    QCOMPARE(fault.fired(), 1U);
}

void FaultTest::replyIsAnsweredWithoutEffect()
{
    m_simulator->addService(rawId, {{QStringLiteral("Favorite"), true}});
    const Fault fault = m_simulator->injectFault(service, QStringLiteral("Remove"), FaultKind::reply({}));
    QCOMPARE(m_client->service(rawId, QStringLiteral("Remove")).text(), QString());
    QCOMPARE(m_client->property(rawId, QStringLiteral("Favorite")), QStringLiteral("true"));
}

void FaultTest::replyKeepsAnyType()
{
    const Fault fault =
        m_simulator->injectFault(manager, getServices,
                                 FaultKind::reply({QVariant::fromValue(QList<int>{1, 2}),
                                                   QVariant::fromValue<uchar>(3), QVariantMap()}));
    const Answer answer = m_client->manager(getServices);
    QCOMPARE(answer.text(), QStringLiteral("[1, 2], byte 0x03, @a{sv} {}"));
    QCOMPARE(answer.signature, QStringLiteral("aiya{sv}"));
}

void FaultTest::delayedCallHasItsEffectLater()
{
    m_simulator->addService(rawId, {{QStringLiteral("Favorite"), true}});
    const Fault fault = m_simulator->injectFault(service, QStringLiteral("Remove"), FaultKind::delay(300));
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(rawId, QStringLiteral("Remove"));
    QElapsedTimer elapsed;
    elapsed.start();
    QVERIFY(m_simulator->waitForCall(QStringLiteral("/net/connman/service/wifi_raw_managed_psk "
                                                    "net.connman.Service.Remove")));
    QCOMPARE(m_client->property(rawId, QStringLiteral("Favorite")), QStringLiteral("true"));
    QVERIFY(!pending->wait().isError);
    QVERIFY2(elapsed.elapsed() >= 290, qPrintable(QString::number(elapsed.elapsed())));
    QCOMPARE(m_client->property(rawId, QStringLiteral("Favorite")), QStringLiteral("false"));
}

void FaultTest::lateErrorLetsOtherCallsGoFirst()
{
    m_simulator->addService(rawId, {});
    const FaultKind refusal =
        FaultKind::error(QStringLiteral("net.connman.Error.Failed"), QStringLiteral("no"));
    const Fault fault = m_simulator->injectFault(service, QStringLiteral("Remove"), refusal.after(300));
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(rawId, QStringLiteral("Remove"));
    QVERIFY(!m_client->manager(getServices).isError);
    QVERIFY(!pending->hasCome());
    QVERIFY(pending->wait().isError);
}

void FaultTest::neverIsNotAnsweredAndHasNoEffect()
{
    m_simulator->addService(rawId, {{QStringLiteral("Favorite"), true}});
    const Fault fault = m_simulator->injectFault(service, QStringLiteral("Remove"), FaultKind::never());
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(rawId, QStringLiteral("Remove"));
    // A later call on the same connection is answered: the first one would have been by then.
    QVERIFY(!m_client->manager(getServices).isError);
    QVERIFY(!pending->hasCome());
    QCOMPARE(m_client->property(rawId, QStringLiteral("Favorite")), QStringLiteral("true"));
}

void FaultTest::vanishDropsTheConnectionInTheMiddleOfTheCall()
{
    m_simulator->addService(rawId);
    const Fault fault = m_simulator->injectFault(service, QStringLiteral("Connect"), FaultKind::vanish());
    const Answer answer = m_client->service(rawId, QStringLiteral("Connect"));
    QVERIFY2(answer.error.startsWith(noReply), qPrintable(answer.error));
    QVERIFY(!isOnTheBus(connman));
    QVERIFY(isOnTheBus(configurationManager));
}

void FaultTest::vanishedServiceIsBroughtBack()
{
    const Fault fault = m_simulator->injectFault(manager, getServices, FaultKind::vanish());
    QVERIFY(m_client->manager(getServices).isError);
    m_simulator->setPresent(connman, true);
    QVERIFY(!m_client->manager(getServices).isError);
}

void FaultTest::countLimitsHowOftenItFires()
{
    const Fault fault =
        m_simulator->injectFault(manager, getServices, FaultKind::error(QStringLiteral("a.B"), {}), {}, 2);
    QVERIFY(m_client->manager(getServices).isError);
    QVERIFY(m_client->manager(getServices).isError);
    QVERIFY(!m_client->manager(getServices).isError);
    QCOMPARE(fault.fired(), 2U);
}

void FaultTest::countZeroFiresForEver()
{
    const Fault fault =
        m_simulator->injectFault(manager, getServices, FaultKind::error(QStringLiteral("a.B"), {}), {}, 0);
    for (uint times = 1; times <= 5; ++times) {
        QVERIFY(m_client->manager(getServices).isError);
        QCOMPARE(fault.fired(), times);
    }
}

void FaultTest::pathLimitsWhereItFires()
{
    m_simulator->addService(rawId);
    m_simulator->addService(otherId);
    const Fault fault = m_simulator->injectFault(
        service, QStringLiteral("GetProperties"), FaultKind::error(QStringLiteral("a.B"), {}),
        QStringLiteral("/net/connman/service/wifi_other_managed_psk"));
    QVERIFY(!m_client->service(rawId, QStringLiteral("GetProperties")).isError);
    QCOMPARE(fault.fired(), 0U);
    QVERIFY(m_client->service(otherId, QStringLiteral("GetProperties")).isError);
}

void FaultTest::olderFaultFiresFirst()
{
    const Fault first =
        m_simulator->injectFault(manager, getServices, FaultKind::error(QStringLiteral("a.First"), {}));
    const Fault second =
        m_simulator->injectFault(manager, getServices, FaultKind::error(QStringLiteral("a.Second"), {}));
    QCOMPARE(m_client->manager(getServices).text(), QStringLiteral("a.First: "));
    QCOMPARE(m_client->manager(getServices).text(), QStringLiteral("a.Second: "));
}

void FaultTest::clearedFaultFiresNoMore()
{
    const Fault fault =
        m_simulator->injectFault(manager, getServices, FaultKind::error(QStringLiteral("a.B"), {}), {}, 0);
    QVERIFY(m_client->manager(getServices).isError);
    m_simulator->clearFaults();
    QVERIFY(!m_client->manager(getServices).isError);
    QCOMPARE(fault.fired(), 1U);
}

void FaultTest::faultedCallIsRecorded()
{
    const Fault fault =
        m_simulator->injectFault(manager, getServices, FaultKind::error(QStringLiteral("a.B"), {}));
    m_client->manager(getServices);
    QCOMPARE(m_simulator->calls(), QStringList{QStringLiteral("/ net.connman.Manager.GetServices()")});
}

void FaultTest::speechAndConfigurationCanFailToo_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariantList>("arguments");
    QTest::newRow("speech") << speech << QStringLiteral("speakFromId")
                            << QVariantList{QStringLiteral("id"), QVariantMap()};
    QTest::newRow("configuration") << configurationManager << QStringLiteral("process")
                                   << QVariantList{QVariantMap()};
}

void FaultTest::speechAndConfigurationCanFailToo()
{
    QFETCH(QString, name);
    QFETCH(QString, member);
    QFETCH(QVariantList, arguments);
    const Fault fault = m_simulator->injectFault(name, member, FaultKind::error(QStringLiteral("a.B"), {}));
    QCOMPARE(m_client->call(name, QStringLiteral("/"), name, member, arguments).text(),
             QStringLiteral("a.B: "));
}

void FaultTest::faultThatDidNotFireFailsTheTest()
{
    Fault fault = m_simulator->injectFault(manager, getServices, FaultKind::never());
    QCOMPARE(fault.fired(), 0U);
    QEXPECT_FAIL("", "it did not fire", Continue);
    fault.verify();
}

void FaultTest::leavingEndsCallsUnderWay()
{
    m_simulator->addService(rawId, {{QStringLiteral("Favorite"), true}});
    m_simulator->setTiming(QStringLiteral("association"), 60000);
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(rawId, QStringLiteral("Connect"));
    QVERIFY(m_client->waitForState(rawId, QStringLiteral("association")));
    m_simulator->setPresent(connman, false);
    const Answer answer = pending->wait();
    QVERIFY2(answer.error.startsWith(noReply), qPrintable(answer.error));
}

void FaultTest::comingBackForgetsAgentsAndKeepsServices()
{
    m_simulator->addService(rawId);
    m_client->manager(QStringLiteral("RegisterAgent"), {QVariant::fromValue(QDBusObjectPath("/an/agent"))});
    m_simulator->setPresent(connman, false);
    m_client->clear();
    m_simulator->setPresent(connman, true);
    QVERIFY(
        m_client->waitForSignal(QStringLiteral("ServicesChanged([(objectpath "
                                               "\"/net/connman/service/wifi_raw_managed_psk\", {\"Type\"")));
    QCOMPARE(m_client->signalLines(QStringLiteral("TechnologyAdded")).size(), 2);
    QCOMPARE(m_simulator->agents(), QList<QDBusObjectPath>());
    QCOMPARE(m_simulator->services(), QStringList{rawId});
}

void FaultTest::servicesComeAndGoByName_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : {connman, configurationManager, speech}) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

void FaultTest::servicesComeAndGoByName()
{
    QFETCH(QString, name);
    QVERIFY(isOnTheBus(name));
    m_simulator->setPresent(name, false);
    QVERIFY(waitUntilGone(name));
    m_simulator->setPresent(name, true);
    QVERIFY(isOnTheBus(name));
}

void FaultTest::restartForgetsWhatOnlyLivedInMemory()
{
    m_simulator->addService(
        rawId, {{QStringLiteral("Favorite"), true}, {QStringLiteral("State"), QStringLiteral("ready")}});
    m_simulator->addService(otherId);
    m_simulator->setTiming(QStringLiteral("autoConnect"), -1);
    m_simulator->restartConnman();
    QCOMPARE(m_simulator->services(), QStringList{rawId});
    QCOMPARE(m_client->property(rawId, QStringLiteral("State")), QStringLiteral("\"idle\""));
    QCOMPARE(m_client->property(rawId, QStringLiteral("Favorite")), QStringLiteral("true"));
}

void FaultTest::restartReleasesAgents()
{
    TestAgent agent(m_client->connection());
    m_client->manager(QStringLiteral("RegisterAgent"),
                      {QVariant::fromValue(QDBusObjectPath(TestAgent::path))});
    m_simulator->restartConnman();
    QVERIFY(agent.waitForLine(QStringLiteral("Release()")));
    QCOMPARE(m_simulator->agents(), QList<QDBusObjectPath>());
}

void FaultTest::restartKeepsFavouritesOnTheAir()
{
    const QString id = m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")},
                                                {QStringLiteral("security"), QStringLiteral("none")}});
    QVERIFY(!m_client->service(id, QStringLiteral("Connect")).isError);
    QVERIFY(m_client->waitForState(id, QStringLiteral("online")));
    m_client->clear();
    m_simulator->restartConnman();
    // Known and in reach, so it is connected again by itself.
    QVERIFY(m_client->waitForState(id, QStringLiteral("online")));
    QCOMPARE(m_client->property(id, QStringLiteral("Favorite")), QStringLiteral("true"));
}

static const Suite<FaultTest> suite;
#include "FaultTest.moc"
