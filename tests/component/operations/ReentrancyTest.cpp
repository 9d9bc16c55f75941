#include "ConnmanAgent.h"
#include "ConnmanAgentDBus.h"
#include "ConnmanManager.h"
#include "ConnmanTypes.h"
#include "EventWait.h"
#include "LogCapture.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"
#include "Suite.h"
#include "Text.h"

#include <functional>
#include <memory>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QTest>
#include <QTimer>

using test_support::eventTimeoutMs;
using test_support::Fault;
using test_support::FaultKind;
using test_support::SimulatorClient;
using ServicePtr = std::shared_ptr<ConnmanService>;
using State = ConnmanService::State;

namespace {

const QString connmanName = "net.connman"_s;
const QString connectCall = "net.connman.Service.Connect()"_s;

} // namespace

/// Connecting is where the event loop is entered again: what may happen inside, on a ConnMan that asks the
/// agent and with the registry of all services listening. Nothing may crash or wait for ever, everybody gets
/// an answer.
class ReentrancyTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void agentIsAskedDuringConnect();
    void wrongCredentialsAreReportedDuringConnect();
    void refusingAgentEndsConnect();
    void stateChangesAreToldDuringConnect();
    void propertiesChangeDuringConnect();
    void serviceThatLeavesTheRegistryWhileItConnectsAnswers();
    void connmanLeavingEndsConnect();
    void connmanComesBackDuringConnect();
    void connmanRestartingDuringConnectCanBeAskedAgain();
    void secondConnectOfTheSameServiceIsAnswered();
    void connectsOfTwoServicesNestAndAreBothAnswered();
    void connectsNestThreeDeep();
    void disconnectDuringConnectAbortsIt();
    void removeDuringConnectAbortsIt();
    void propertyIsWrittenDuringConnect();
    void registryIsReloadedDuringConnect();
    void registryEndsDuringConnect();

private:
    QString addNetwork(const char *ssid, const char *passphrase = nullptr);
    ServicePtr service(const QString &identifier) const;
    /// Runs `action` once ConnMan has received the call, from the event loop.
    template <typename Action>
    void onConnect(Action action);
    Fault delayConnect(const QString &identifier, int milliseconds);
    QStringList criticalLines() const { return m_log->lines("ConnmanService"_s, QtCriticalMsg); }

    test_support::PrivateBus m_bus;
    // As in the daemon: Qt then follows ConnMan's coming and going without gaps.
    QDBusServiceWatcher m_presence{connmanName, QDBusConnection::systemBus()};
    std::unique_ptr<test_support::LogCapture> m_log;
    std::unique_ptr<SimulatorClient> m_connman;
    std::unique_ptr<ConnmanManager> m_manager;
    std::unique_ptr<ConnmanAgent> m_agent;
    // Owns whatever refers to a test's locals.
    std::unique_ptr<QObject> m_context;
};

void ReentrancyTest::initTestCase()
{
    registerConnmanTypes();
}

void ReentrancyTest::init()
{
    m_log = std::make_unique<test_support::LogCapture>();
    m_context = std::make_unique<QObject>();
    m_connman = std::make_unique<SimulatorClient>(m_bus.address());
    QVERIFY(m_connman->isReady());
    m_connman->addTechnology("wifi"_s, {{"Powered"_s, true}});
    m_manager = std::make_unique<ConnmanManager>(QDBusConnection::systemBus(), nullptr);
    m_agent = std::make_unique<ConnmanAgent>(nullptr);
    new ConnmanAgentDBus(m_agent.get());
    QVERIFY(m_manager->registerAgent(QDBusObjectPath("/agent"_s)));
}

void ReentrancyTest::cleanup()
{
    m_context.reset();
    m_agent.reset();
    m_manager.reset();
    m_connman.reset();
    m_log.reset();
}

QString ReentrancyTest::addNetwork(const char *ssid, const char *passphrase)
{
    QVariantMap options{{"ssid"_s, QLatin1String(ssid)}, {"security"_s, "none"_s}};
    if (passphrase != nullptr) {
        options.insert("security"_s, "psk"_s);
        options.insert("passphrase"_s, QLatin1String(passphrase));
    }
    const QString identifier = m_connman->addNetwork(options);
    [&] { QTRY_VERIFY_WITH_TIMEOUT(service(identifier) != nullptr, eventTimeoutMs); }();
    return identifier;
}

ServicePtr ReentrancyTest::service(const QString &identifier) const
{
    for (const ServicePtr &each : m_manager->services()) {
        if (each->identifier() == identifier) {
            return each;
        }
    }
    return nullptr;
}

template <typename Action>
void ReentrancyTest::onConnect(Action action)
{
    // The signals of earlier calls go by first: they are here with the answer to a later request.
    m_connman->calls();
    QCoreApplication::processEvents();
    auto *once = new QObject(m_context.get());
    connect(m_connman.get(), &SimulatorClient::called, once, [this, once, action](const QString &line) {
        if (line.endsWith(connectCall)) {
            once->deleteLater();
            disconnect(m_connman.get(), nullptr, once, nullptr);
            action();
        }
    });
}

Fault ReentrancyTest::delayConnect(const QString &identifier, int milliseconds)
{
    return m_connman->injectFault("net.connman.Service"_s, "Connect"_s, FaultKind::delay(milliseconds),
                                  "/net/connman/service/"_s + identifier);
}

void ReentrancyTest::agentIsAskedDuringConnect()
{
    const QString home = addNetwork("HomeNet", "correct horse");
    m_agent->setRequest(home, "correct horse"_s, ConnmanAgent::RequestType::Psk, QString());

    QVERIFY(service(home)->connect());
    QTRY_VERIFY_WITH_TIMEOUT(service(home)->state() >= State::Ready, eventTimeoutMs);
    QCOMPARE(m_log->takeCriticals(), QStringList());
}

void ReentrancyTest::wrongCredentialsAreReportedDuringConnect()
{
    const QString home = addNetwork("HomeNet", "correct horse");
    m_agent->setRequest(home, "wrong horse"_s, ConnmanAgent::RequestType::Psk, QString());

    QVERIFY(!service(home)->connect());
    QCOMPARE(m_agent->lastError(), "invalid-key"_s);
    QCOMPARE(criticalLines().size(), 1);
    QVERIFY(criticalLines().constFirst().endsWith(
        "QDBusError(\"net.connman.Error.Failed\", \"Input/output error\")"_s));
}

void ReentrancyTest::refusingAgentEndsConnect()
{
    const QString home = addNetwork("HomeNet", "correct horse");

    QVERIFY(!service(home)->connect());
    QVERIFY(service(home)->state() < State::Association);
    QCOMPARE(criticalLines().size(), 1);
}

void ReentrancyTest::stateChangesAreToldDuringConnect()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    m_connman->setTiming("association"_s, 300); // or the first refresh sees a later state
    m_connman->setTiming("online"_s, 60000);    // or the one of "ready" does
    QList<State> states;
    connect(connecting.get(), &ConnmanService::stateChanged, m_context.get(),
            [&states](State state) { states.append(state); });

    QVERIFY(connecting->connect());
    QVERIFY(!states.isEmpty());
    QCOMPARE(states.constFirst(), State::Association);
    QTRY_VERIFY_WITH_TIMEOUT(states.contains(State::Ready), eventTimeoutMs);
}

void ReentrancyTest::propertiesChangeDuringConnect()
{
    const QString cafe = addNetwork("Cafe");
    const Fault slow = delayConnect(cafe, 200);
    onConnect([&] { m_connman->setServiceProperty(cafe, "Strength"_s, QVariant::fromValue<uchar>(13)); });

    QVERIFY(service(cafe)->connect());
    QCOMPARE(service(cafe)->strength(), 13);
}

void ReentrancyTest::serviceThatLeavesTheRegistryWhileItConnectsAnswers()
{
    const QString cafe = addNetwork("Cafe");
    const Fault slow = delayConnect(cafe, 300);
    onConnect([&] { m_connman->removeService(cafe); });

    ServicePtr connecting = service(cafe);
    bool removedInside = false;
    QTimer watch;
    connect(&watch, &QTimer::timeout, m_context.get(),
            [&] { removedInside = removedInside || service(cafe) == nullptr; });
    watch.start(10);
    QVERIFY(!connecting->connect());
    QVERIFY(removedInside);
    QCOMPARE(connecting->identifier(), cafe);
    QCOMPARE(criticalLines(), QStringList());
}

void ReentrancyTest::connmanLeavingEndsConnect()
{
    const QString cafe = addNetwork("Cafe");
    const Fault slow = delayConnect(cafe, 60000);
    onConnect([&] { m_connman->setPresent(connmanName, false); });

    QVERIFY(!service(cafe)->connect());
    QVERIFY(criticalLines().constFirst().contains("\"org.freedesktop.DBus.Error.NoReply\""_s));
}

void ReentrancyTest::connmanComesBackDuringConnect()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    const Fault slow = delayConnect(cafe, 60000);
    onConnect([&] {
        m_connman->setPresent(connmanName, false);
        m_connman->setPresent(connmanName, true);
    });

    QVERIFY(!connecting->connect());
    // The disconnect that follows finds the new ConnMan.
    QVERIFY(
        !m_connman->callsStartingWith(connecting->path() + " net.connman.Service.Disconnect()"_s).isEmpty());
}

void ReentrancyTest::connmanRestartingDuringConnectCanBeAskedAgain()
{
    const QString cafe = addNetwork("Cafe");
    const Fault slow = delayConnect(cafe, 60000);
    onConnect([&] { m_connman->restartConnman(); });
    QVERIFY(!service(cafe)->connect());

    const QString again = addNetwork("Hotel");
    QVERIFY(service(again)->connect());
}

void ReentrancyTest::secondConnectOfTheSameServiceIsAnswered()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    m_connman->setTiming("association"_s, 200);
    int innerResult = -1;
    onConnect([&] { innerResult = connecting->connect() ? 1 : 0; });

    QVERIFY(connecting->connect());
    QCOMPARE(innerResult, 0);
    QCOMPARE(criticalLines().size(), 1);
    QVERIFY(criticalLines().constFirst().endsWith(
        "QDBusError(\"net.connman.Error.InProgress\", \"In progress\")"_s));
}

void ReentrancyTest::connectsOfTwoServicesNestAndAreBothAnswered()
{
    const QString cafe = addNetwork("Cafe");
    const QString hotel = addNetwork("Hotel");
    const Fault slow = delayConnect(hotel, 300);
    const Fault outerAnswered = m_connman->injectFault("net.connman.Service"_s, "Connect"_s,
                                                       FaultKind::reply({}), service(cafe)->path());
    int innerResult = -1;
    // The outer reply arrives while the inner connect still waits.
    onConnect([&] { innerResult = service(hotel)->connect() ? 1 : 0; });

    QVERIFY(service(cafe)->connect());
    QTRY_COMPARE_WITH_TIMEOUT(innerResult, 1, eventTimeoutMs);
}

void ReentrancyTest::connectsNestThreeDeep()
{
    const QStringList identifiers{addNetwork("Cafe"), addNetwork("Hotel"), addNetwork("Train")};
    QStringList answered;
    const std::function<void(int)> connectFrom = [&](int index) {
        if (index + 1 < identifiers.size()) {
            onConnect([&, index] { connectFrom(index + 1); });
        }
        service(identifiers.at(index))->connect();
        answered.append(identifiers.at(index));
    };
    connectFrom(0);

    QTRY_COMPARE_WITH_TIMEOUT(answered.size(), 3, eventTimeoutMs);
}

void ReentrancyTest::disconnectDuringConnectAbortsIt()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    m_connman->setTiming("association"_s, 60000);
    int disconnected = -1;
    onConnect([&] { disconnected = connecting->disconnect() ? 1 : 0; });

    QVERIFY(!connecting->connect());
    QCOMPARE(disconnected, 1);
    QVERIFY(criticalLines().constLast().endsWith(
        "QDBusError(\"net.connman.Error.OperationAborted\", \"Operation aborted\")"_s));
}

void ReentrancyTest::removeDuringConnectAbortsIt()
{
    const QString cafe = addNetwork("Cafe");
    QVERIFY(service(cafe)->connect());
    QVERIFY(service(cafe)->disconnect());
    const ServicePtr connecting = service(cafe);
    // Removing begins with a return to DHCP, which makes ConnMan configure at once.
    m_connman->setTiming("association"_s, 60000);
    m_connman->setTiming("configuration"_s, 60000);
    int removed = -1;
    onConnect([&] { removed = connecting->remove() ? 1 : 0; });

    QVERIFY(!connecting->connect());
    QCOMPARE(removed, 1);
}

void ReentrancyTest::propertyIsWrittenDuringConnect()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    const Fault slow = delayConnect(cafe, 200);
    int written = -1;
    onConnect([&] { written = connecting->configureIpv6(false) ? 1 : 0; });

    QVERIFY(connecting->connect());
    QCOMPARE(written, 1);
}

void ReentrancyTest::registryIsReloadedDuringConnect()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    const Fault slow = delayConnect(cafe, 200);
    onConnect([&] {
        m_manager->remService(QDBusObjectPath(connecting->path()));
        m_manager->updateServices();
    });

    QVERIFY(connecting->connect());
    QVERIFY(service(cafe) != nullptr);
    QVERIFY(service(cafe) != connecting);
}

void ReentrancyTest::registryEndsDuringConnect()
{
    const QString cafe = addNetwork("Cafe");
    const ServicePtr connecting = service(cafe);
    const Fault slow = delayConnect(cafe, 200);
    onConnect([&] { m_manager.reset(); });

    QVERIFY(connecting->connect());
    QVERIFY(m_manager == nullptr);
}

static const Suite<ReentrancyTest> suite;
#include "ReentrancyTest.moc"
