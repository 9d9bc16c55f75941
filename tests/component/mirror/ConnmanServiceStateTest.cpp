// How ConnmanService follows ConnMan's "State".

#include "StateScene.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

using namespace test_support;

namespace {

} // namespace

class ConnmanServiceStateTest : public ConnmanFixture
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

    void stateChangeIsLoggedOnceBeforeItIsAnnounced();
};

void ConnmanServiceStateTest::statesHaveTheirNumbers()
{
    const QVector<State> inOrder{State::Unknown,     State::Disconnect,    State::Failure, State::Idle,
                                 State::Association, State::Configuration, State::Ready,   State::Online};
    for (int number = 0; number < inOrder.size(); ++number) {
        QCOMPARE(int(inOrder[number]), number);
    }
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
    StateScene scene(*this, start);
    changeState(*this, QLatin1String(QTest::currentDataTag()));
    QCOMPARE(scene.service.state(), state);
    QCOMPARE(scene.states(), {state});
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceStateTest::firstFillFollowsTheState()
{
    const QDBusObjectPath path = addService(Identifier, {{StateKey, "ready"_s}});
    ConnmanService service(connection(), path, nullptr);
    const QSignalSpy changes(&service, &ConnmanService::stateChanged);
    service.serviceChanged();
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.constFirst().constFirst().value<State>(), State::Ready);
    QCOMPARE(service.previousState(), State::Unknown);
    QCOMPARE(calls(), {getPropertiesCall(path.path())});
}

void ConnmanServiceStateTest::stateIsSetBeforeItIsAnnounced()
{
    StateScene scene(*this, "association"_s);
    State seen = State::Unknown;
    State seenPrevious = State::Unknown;
    connect(&scene.service, &ConnmanService::stateChanged, this, [&] {
        seen = scene.service.state();
        seenPrevious = scene.service.previousState();
    });
    changeState(*this, "configuration"_s);
    QCOMPARE(seen, State::Configuration);
    QCOMPARE(seenPrevious, State::Association);
}

void ConnmanServiceStateTest::previousStateIsTheOneBeforeTheLatestChange()
{
    StateScene scene(*this, "association"_s);
    changeState(*this, "configuration"_s);
    changeState(*this, "ready"_s);
    changeState(*this, "ready"_s);
    QCOMPARE(scene.service.state(), State::Ready);
    QCOMPARE(scene.service.previousState(), State::Configuration);
}

void ConnmanServiceStateTest::changeFromAssociationToReadyRefreshesAllPropertiesAndIsAnnouncedOnce()
{
    StateScene scene(*this, "association"_s);
    connman().setServiceProperty(Identifier, "Novelty"_s, 1, true);
    connman().setServiceProperty(Identifier, StateKey, "ready"_s, true);
    emitPropertyChanged(scene.service.path(), StateKey, "ready"_s);
    deliver();
    QCOMPARE(scene.states(), {State::Ready});
    QCOMPARE(scene.service.previousState(), State::Association);
    QCOMPARE(scene.service.properties().value("Novelty"_s), QVariant(1));
    QCOMPARE(calls(), {getPropertiesCall(scene.service.path())});
}

void ConnmanServiceStateTest::listenersOfAStateChangeFindTheAddressesCurrent()
{
    StateScene scene(*this, "configuration"_s);
    const QVariantMap ipv4{{"Method"_s, "dhcp"_s}, {"Address"_s, "10.0.0.2"_s}};
    connman().setServiceProperty(Identifier, Ipv4, ipv4, true);
    QString seen;
    connect(&scene.service, &ConnmanService::stateChanged, this,
            [&] { seen = scene.service.getIpv4ConfigurationValue("Address"_s); });
    changeState(*this, "ready"_s);
    QCOMPARE(seen, "10.0.0.2"_s);
}

void ConnmanServiceStateTest::sameStateTwiceIsAnnouncedOnce()
{
    StateScene scene(*this, "association"_s);
    connman().setServiceProperty(Identifier, StateKey, "ready"_s, true);
    emitPropertyChanged(scene.service.path(), StateKey, "ready"_s);
    emitPropertyChanged(scene.service.path(), StateKey, "ready"_s);
    deliver();
    QCOMPARE(scene.states(), {State::Ready});
    const QString call = getPropertiesCall(scene.service.path());
    const QStringList expected{call, call};
    QCOMPARE(calls(), expected);
    QVERIFY(!scene.service.updateState());
}

// ConnMan has moved on by the time its signal is read.
void ConnmanServiceStateTest::refreshHasTheLastWordOnTheState()
{
    StateScene scene(*this, "association"_s);
    connman().setServiceProperty(Identifier, StateKey, "failure"_s, true);
    emitPropertyChanged(scene.service.path(), StateKey, "configuration"_s);
    deliver();
    QCOMPARE(scene.states(), {State::Failure});
}

void ConnmanServiceStateTest::serviceChangedWithTheSameStateAnnouncesNothing()
{
    StateScene scene(*this, "idle"_s);
    scene.service.serviceChanged();
    QCOMPARE(scene.changes.count(), 0);
    QCOMPARE(calls(), {getPropertiesCall(scene.service.path())});
}

void ConnmanServiceStateTest::serviceChangedFollowsAStateThatCameWithoutASignal()
{
    StateScene scene(*this, "idle"_s);
    connman().setServiceProperty(Identifier, StateKey, "online"_s, true);
    scene.service.serviceChanged();
    QCOMPARE(scene.states(), {State::Online});
    QCOMPARE(scene.service.previousState(), State::Idle);
}

void ConnmanServiceStateTest::stateChangeIsLoggedOnceBeforeItIsAnnounced()
{
    StateScene scene(*this, "idle"_s);
    log().clear();
    QStringList linesAtSignal;
    connect(&scene.service, &ConnmanService::stateChanged, this,
            [&] { linesAtSignal = debugLines(PropertiesLog); });
    changeState(*this, "ready"_s);
    const QStringList expected{"propertyChanged( \"State\" ,  QVariant(QString, \"ready\") )"_s,
                               "State of \"%1\" changed \"idle\" => \"ready\""_s.arg(scene.service.path())};
    QCOMPARE(linesAtSignal, expected);
    QCOMPARE(debugLines(PropertiesLog), expected);
}

static const Suite<ConnmanServiceStateTest> connmanServiceStateTest;
#include "ConnmanServiceStateTest.moc"
