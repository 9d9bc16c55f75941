// What becomes of a service's state when ConnMan's "State" is no good or cannot be read.

#include "StateScene.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

using namespace test_support;

namespace {

QString unknownState(const QString &word)
{
    return critical(PropertiesLog, "Unknown/invalid state received: \"%1\""_s.arg(word));
}

} // namespace

class UnusableStateTest : public ConnmanFixture
{
    Q_OBJECT

private slots:
    void unlistedStateIsOneLineAndKeepsTheOldOne_data();
    void unlistedStateIsOneLineAndKeepsTheOldOne();
    void stateThatIsNoTextIsOneLineAndKeepsTheOldOne_data();
    void stateThatIsNoTextIsOneLineAndKeepsTheOldOne();
    void updateStateOnAnEmptyCacheIsOneLine();
    void stateAfterAnInvalidOneIsFollowedAgain();
    void failedRefreshStillFollowsTheAnnouncedState();
    void vanishedServiceStillFollowsTheAnnouncedState();
};

void UnusableStateTest::unlistedStateIsOneLineAndKeepsTheOldOne_data()
{
    QTest::addColumn<QString>("word");
    QTest::newRow("unknown") << "unknown"_s;
    QTest::newRow("unlisted") << "offline"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("capitalised") << "Ready"_s;
    QTest::newRow("with a blank") << "ready "_s;
}

void UnusableStateTest::unlistedStateIsOneLineAndKeepsTheOldOne()
{
    QFETCH(QString, word);
    StateScene scene(*this, "ready"_s);
    changeState(*this, word);
    QCOMPARE(scene.changes.count(), 0);
    QCOMPARE(scene.service.state(), State::Ready);
    QCOMPARE(complaints(), {unknownState(word)});
}

void UnusableStateTest::stateThatIsNoTextIsOneLineAndKeepsTheOldOne_data()
{
    QTest::addColumn<QVariantMap>("properties");
    QTest::addColumn<QString>("line");
    QTest::newRow("missing") << QVariantMap{{"Name"_s, "Home"_s}}
                             << "Service-properties doesn't contain a value for State"_s;
    QTest::newRow("dictionary") << QVariantMap{{StateKey, QVariantMap()}}
                                << "Invalid value of State for service \"%1\""_s.arg(pathOf(Identifier));
}

void UnusableStateTest::stateThatIsNoTextIsOneLineAndKeepsTheOldOne()
{
    QFETCH(QVariantMap, properties);
    QFETCH(QString, line);
    StateScene scene(*this, "ready"_s);
    const Fault fault = answerGetProperties(properties);
    scene.service.serviceChanged();
    QCOMPARE(scene.service.state(), State::Ready);
    QCOMPARE(complaints(), {critical(PropertiesLog, line)});
}

void UnusableStateTest::updateStateOnAnEmptyCacheIsOneLine()
{
    ConnmanService service(connection(), QDBusObjectPath("/x"_s), nullptr);
    QVERIFY(!service.updateState());
    QCOMPARE(service.state(), State::Unknown);
    QCOMPARE(complaints(),
             {critical(PropertiesLog, "Service-properties doesn't contain a value for State"_s)});
}

void UnusableStateTest::stateAfterAnInvalidOneIsFollowedAgain()
{
    StateScene scene(*this, "idle"_s);
    changeState(*this, "unknown"_s);
    QCOMPARE(scene.service.state(), State::Idle);
    scene.changes.clear();
    changeState(*this, "ready"_s);
    QCOMPARE(scene.states(), {State::Ready});
    QCOMPARE(scene.service.previousState(), State::Idle);
}

void UnusableStateTest::failedRefreshStillFollowsTheAnnouncedState()
{
    StateScene scene(*this, "association"_s);
    const Fault fault = failGetProperties("net.connman.Error.Failed"_s, "Not today"_s);
    changeState(*this, "ready"_s);
    QCOMPARE(scene.states(), {State::Ready});
    QCOMPARE(complaints(), {critical(PropertiesLog, "Call to GetProperties failed: \"Not today\""_s)});
}

void UnusableStateTest::vanishedServiceStillFollowsTheAnnouncedState()
{
    StateScene scene(*this, "ready"_s);
    emitPropertyChanged(scene.service.path(), StateKey, "disconnect"_s);
    connman().removeService(Identifier);
    deliver();
    QCOMPARE(scene.states(), {State::Disconnect});
    QCOMPARE(complaints(), QStringList());
}

static const Suite<UnusableStateTest> unusableStateTest;
#include "UnusableStateTest.moc"
