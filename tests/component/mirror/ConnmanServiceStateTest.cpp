// How ConnmanService follows ConnMan's "State".

#include "ConnmanService.h"
#include "MirrorWorld.h"
#include "Suite.h"
#include "Text.h"

#include <QSignalSpy>
#include <QTest>

using test_support::Fault;
using State = ConnmanService::State;

Q_DECLARE_METATYPE(ConnmanService::State)

namespace {

const QLatin1String Identifier("wifi_020000000000_686f6d65_managed_psk");
const QLatin1String PropertiesLog("ConnmanService.properties");
const QLatin1String StateKey("State");
const QLatin1String Ipv4("IPv4");

/// What a service said of itself, in order.
QVector<State> states(const QSignalSpy &spy)
{
    QVector<State> result;
    for (const QVariantList &arguments : spy) {
        result << arguments.constFirst().value<State>();
    }
    return result;
}

/// A service whose state is followed from `word` on.
std::unique_ptr<ConnmanService> serviceInState(MirrorWorld &world, const QString &word)
{
    const QDBusObjectPath path = world.addService(Identifier, {{StateKey, word}});
    auto service = std::make_unique<ConnmanService>(world.connection(), path, nullptr);
    service->serviceChanged();
    world.simulator().clearCalls();
    return service;
}

/// ConnMan moves the service to another state and tells so.
void changeState(MirrorWorld &world, const QString &word)
{
    world.simulator().setServiceProperty(Identifier, StateKey, word);
    world.deliver();
}

QString unknownState(const QString &word)
{
    return critical(PropertiesLog, "Unknown/invalid state received: \"%1\""_s.arg(word));
}

} // namespace

class ConnmanServiceStateTest : public QObject
{
    Q_OBJECT

private slots:
    void statesHaveTheirNumbers();
    void everyStateWordIsFollowed_data();
    void everyStateWordIsFollowed();
    void firstFillFollowsTheState();
    void stateIsSetBeforeItIsAnnounced();
    void previousStateIsTheOneBeforeTheLatestChange();

    void changeFromAssociationToReadyRefreshesAllPropertiesAndIsAnnouncedOnce();
    void listenersOfAStateChangeFindTheAddressesCurrent();
    void sameStateTwiceIsAnnouncedOnce();
    void refreshHasTheLastWordOnTheState();
    void serviceChangedWithTheSameStateAnnouncesNothing();
    void serviceChangedFollowsAStateThatCameWithoutASignal();

    void unlistedStateIsOneLineAndKeepsTheOldOne_data();
    void unlistedStateIsOneLineAndKeepsTheOldOne();
    void missingStateIsOneLineAndKeepsTheOldOne();
    void stateThatIsNoTextIsOneLineAndKeepsTheOldOne();
    void updateStateOnAnEmptyCacheIsOneLine();
    void stateAfterAnInvalidOneIsFollowedAgain();

    void failedRefreshStillFollowsTheAnnouncedState();
    void vanishedServiceStillFollowsTheAnnouncedState();
    void stateChangeLogsOneDebugLine();
    void stateChangeIsLoggedBeforeItIsAnnounced();
};

void ConnmanServiceStateTest::statesHaveTheirNumbers()
{
    QCOMPARE(int(State::Unknown), 0);
    QCOMPARE(int(State::Disconnect), 1);
    QCOMPARE(int(State::Failure), 2);
    QCOMPARE(int(State::Idle), 3);
    QCOMPARE(int(State::Association), 4);
    QCOMPARE(int(State::Configuration), 5);
    QCOMPARE(int(State::Ready), 6);
    QCOMPARE(int(State::Online), 7);
}

void ConnmanServiceStateTest::everyStateWordIsFollowed_data()
{
    QTest::addColumn<State>("state");
    QTest::newRow("disconnect") << State::Disconnect;
    QTest::newRow("failure") << State::Failure;
    QTest::newRow("idle") << State::Idle;
    QTest::newRow("association") << State::Association;
    QTest::newRow("configuration") << State::Configuration;
    QTest::newRow("ready") << State::Ready;
    QTest::newRow("online") << State::Online;
}

void ConnmanServiceStateTest::everyStateWordIsFollowed()
{
    QFETCH(State, state);
    const QString start = state == State::Idle ? "ready"_s : "idle"_s;
    MirrorWorld world;
    const auto service = serviceInState(world, start);
    const QSignalSpy changes(service.get(), &ConnmanService::stateChanged);
    changeState(world, QLatin1String(QTest::currentDataTag()));
    QCOMPARE(service->state(), state);
    QCOMPARE(states(changes), {state});
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanServiceStateTest::firstFillFollowsTheState()
{
    MirrorWorld world;
    const QDBusObjectPath path = world.addService(Identifier, {{StateKey, "ready"_s}});
    ConnmanService service(world.connection(), path, nullptr);
    const QSignalSpy changes(&service, &ConnmanService::stateChanged);
    service.serviceChanged();
    QCOMPARE(states(changes), {State::Ready});
    QCOMPARE(service.previousState(), State::Unknown);
    QCOMPARE(world.simulator().calls(), {MirrorWorld::getPropertiesCall(path.path())});
}

void ConnmanServiceStateTest::stateIsSetBeforeItIsAnnounced()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "association"_s);
    State seen = State::Unknown;
    State seenPrevious = State::Unknown;
    connect(service.get(), &ConnmanService::stateChanged, this, [&] {
        seen = service->state();
        seenPrevious = service->previousState();
    });
    changeState(world, "configuration"_s);
    QCOMPARE(seen, State::Configuration);
    QCOMPARE(seenPrevious, State::Association);
}

void ConnmanServiceStateTest::previousStateIsTheOneBeforeTheLatestChange()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "association"_s);
    changeState(world, "configuration"_s);
    changeState(world, "ready"_s);
    changeState(world, "ready"_s);
    QCOMPARE(service->state(), State::Ready);
    QCOMPARE(service->previousState(), State::Configuration);
}

void ConnmanServiceStateTest::changeFromAssociationToReadyRefreshesAllPropertiesAndIsAnnouncedOnce()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "association"_s);
    const QSignalSpy changes(service.get(), &ConnmanService::stateChanged);
    world.simulator().setServiceProperty(Identifier, "Novelty"_s, 1, true);
    world.simulator().setServiceProperty(Identifier, StateKey, "ready"_s, true);
    world.emitPropertyChanged(service->path(), StateKey, "ready"_s);
    world.deliver();
    QCOMPARE(states(changes), {State::Ready});
    QCOMPARE(service->previousState(), State::Association);
    QCOMPARE(service->properties().value("Novelty"_s), QVariant(1));
    QCOMPARE(world.simulator().calls(), {MirrorWorld::getPropertiesCall(service->path())});
}

void ConnmanServiceStateTest::listenersOfAStateChangeFindTheAddressesCurrent()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "configuration"_s);
    const QVariantMap ipv4{{"Method"_s, "dhcp"_s}, {"Address"_s, "10.0.0.2"_s}};
    world.simulator().setServiceProperty(Identifier, Ipv4, ipv4, true);
    QString seen;
    connect(service.get(), &ConnmanService::stateChanged, this,
            [&] { seen = service->getIpv4ConfigurationValue("Address"_s); });
    changeState(world, "ready"_s);
    QCOMPARE(seen, "10.0.0.2"_s);
}

void ConnmanServiceStateTest::sameStateTwiceIsAnnouncedOnce()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "association"_s);
    const QSignalSpy changes(service.get(), &ConnmanService::stateChanged);
    world.simulator().setServiceProperty(Identifier, StateKey, "ready"_s, true);
    world.emitPropertyChanged(service->path(), StateKey, "ready"_s);
    world.emitPropertyChanged(service->path(), StateKey, "ready"_s);
    world.deliver();
    QCOMPARE(states(changes), {State::Ready});
    const QString call = MirrorWorld::getPropertiesCall(service->path());
    const QStringList expected{call, call};
    QCOMPARE(world.simulator().calls(), expected);
    QVERIFY(!service->updateState());
}

// ConnMan has moved on by the time its signal is read.
void ConnmanServiceStateTest::refreshHasTheLastWordOnTheState()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "association"_s);
    const QSignalSpy changes(service.get(), &ConnmanService::stateChanged);
    world.simulator().setServiceProperty(Identifier, StateKey, "failure"_s, true);
    world.emitPropertyChanged(service->path(), StateKey, "configuration"_s);
    world.deliver();
    QCOMPARE(states(changes), {State::Failure});
}

void ConnmanServiceStateTest::serviceChangedWithTheSameStateAnnouncesNothing()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "idle"_s);
    const QSignalSpy changes(service.get(), &ConnmanService::stateChanged);
    service->serviceChanged();
    QCOMPARE(changes.count(), 0);
    QCOMPARE(world.simulator().calls(), {MirrorWorld::getPropertiesCall(service->path())});
}

void ConnmanServiceStateTest::serviceChangedFollowsAStateThatCameWithoutASignal()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "idle"_s);
    const QSignalSpy changes(service.get(), &ConnmanService::stateChanged);
    world.simulator().setServiceProperty(Identifier, StateKey, "online"_s, true);
    service->serviceChanged();
    QCOMPARE(states(changes), {State::Online});
    QCOMPARE(service->previousState(), State::Idle);
}

void ConnmanServiceStateTest::unlistedStateIsOneLineAndKeepsTheOldOne_data()
{
    QTest::addColumn<QString>("word");
    QTest::newRow("unknown") << "unknown"_s;
    QTest::newRow("unlisted") << "offline"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("capitalised") << "Ready"_s;
    QTest::newRow("with a blank") << "ready "_s;
}

void ConnmanServiceStateTest::unlistedStateIsOneLineAndKeepsTheOldOne()
{
    QFETCH(QString, word);
    MirrorWorld world;
    const auto service = serviceInState(world, "ready"_s);
    const QSignalSpy changes(service.get(), &ConnmanService::stateChanged);
    changeState(world, word);
    QCOMPARE(changes.count(), 0);
    QCOMPARE(service->state(), State::Ready);
    QCOMPARE(world.complaints(), {unknownState(word)});
}

void ConnmanServiceStateTest::missingStateIsOneLineAndKeepsTheOldOne()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "ready"_s);
    const Fault fault = world.answerGetProperties({{"Name"_s, "Home"_s}});
    service->serviceChanged();
    QCOMPARE(service->state(), State::Ready);
    QCOMPARE(world.complaints(),
             {critical(PropertiesLog, "Service-properties doesn't contain a value for State"_s)});
}

void ConnmanServiceStateTest::stateThatIsNoTextIsOneLineAndKeepsTheOldOne()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "ready"_s);
    const Fault fault = world.answerGetProperties({{StateKey, QVariantMap()}});
    service->serviceChanged();
    QCOMPARE(service->state(), State::Ready);
    QCOMPARE(world.complaints(),
             {critical(PropertiesLog, "Invalid value of State for service \"%1\""_s.arg(service->path()))});
}

void ConnmanServiceStateTest::updateStateOnAnEmptyCacheIsOneLine()
{
    MirrorWorld world;
    ConnmanService service(world.connection(), QDBusObjectPath("/x"_s), nullptr);
    QVERIFY(!service.updateState());
    QCOMPARE(service.state(), State::Unknown);
    QCOMPARE(world.complaints(),
             {critical(PropertiesLog, "Service-properties doesn't contain a value for State"_s)});
}

void ConnmanServiceStateTest::stateAfterAnInvalidOneIsFollowedAgain()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "idle"_s);
    changeState(world, "unknown"_s);
    QCOMPARE(service->state(), State::Idle);
    const QSignalSpy changes(service.get(), &ConnmanService::stateChanged);
    changeState(world, "ready"_s);
    QCOMPARE(states(changes), {State::Ready});
    QCOMPARE(service->previousState(), State::Idle);
}

void ConnmanServiceStateTest::failedRefreshStillFollowsTheAnnouncedState()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "association"_s);
    const QSignalSpy changes(service.get(), &ConnmanService::stateChanged);
    const Fault fault = world.failGetProperties("net.connman.Error.Failed"_s, "Not today"_s);
    changeState(world, "ready"_s);
    QCOMPARE(states(changes), {State::Ready});
    QCOMPARE(world.complaints(), {critical(PropertiesLog, "Call to GetProperties failed: \"Not today\""_s)});
}

void ConnmanServiceStateTest::vanishedServiceStillFollowsTheAnnouncedState()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "ready"_s);
    const QSignalSpy changes(service.get(), &ConnmanService::stateChanged);
    world.emitPropertyChanged(service->path(), StateKey, "disconnect"_s);
    world.simulator().removeService(Identifier);
    world.deliver();
    QCOMPARE(states(changes), {State::Disconnect});
    QCOMPARE(world.complaints(), QStringList());
}

void ConnmanServiceStateTest::stateChangeLogsOneDebugLine()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "idle"_s);
    world.log().clear();
    world.simulator().setServiceProperty(Identifier, StateKey, "ready"_s, true);
    service->serviceChanged();
    QCOMPARE(world.debugLines(PropertiesLog),
             {"State of \"%1\" changed \"idle\" => \"ready\""_s.arg(service->path())});
}

void ConnmanServiceStateTest::stateChangeIsLoggedBeforeItIsAnnounced()
{
    MirrorWorld world;
    const auto service = serviceInState(world, "idle"_s);
    world.log().clear();
    QStringList linesAtSignal;
    connect(service.get(), &ConnmanService::stateChanged, this,
            [&] { linesAtSignal = world.debugLines(PropertiesLog); });
    changeState(world, "ready"_s);
    const QStringList expected{"propertyChanged( \"State\" ,  QVariant(QString, \"ready\") )"_s,
                               "State of \"%1\" changed \"idle\" => \"ready\""_s.arg(service->path())};
    QCOMPARE(linesAtSignal, expected);
}

static const Suite<ConnmanServiceStateTest> suite;
#include "ConnmanServiceStateTest.moc"
