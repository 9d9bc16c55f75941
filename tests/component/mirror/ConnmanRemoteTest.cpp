// The calls that the proxies make: how long they wait, and what a call without an answer leaves behind.

#include "ConnmanRemote.h"
#include "ConnmanNames.h"
#include "ConnmanProperties.h"
#include "MirrorWorld.h"
#include "Suite.h"
#include "Text.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QLoggingCategory>
#include <QTest>

using namespace std::chrono_literals;
using test_support::Fault;
using test_support::FaultKind;

namespace {

Q_LOGGING_CATEGORY(logRemoteTest, "RemoteTest", QtCriticalMsg)

const QLatin1String Identifier("wifi_020000000000_686f6d65_managed_psk");
const QString NoReply = "org.freedesktop.DBus.Error.NoReply"_s;
/// Shorter than Qt's own 25 s, so that a time-out that is not obeyed fails the test by its own.
constexpr auto Short = 200ms;

Fault silence(MirrorWorld &world)
{
    return world.simulator().injectFault(ConnmanNames::ServiceInterface, ConnmanNames::GetProperties,
                                         FaultKind::never());
}

ConnmanRemote impatientRemote(MirrorWorld &world)
{
    return {world.connection(), world.addService(Identifier).path(), ConnmanNames::ServiceInterface, Short};
}

} // namespace

class ConnmanRemoteTest : public QObject
{
    Q_OBJECT

private slots:
    void callIsGivenUpAfterItsTimeout();
    void asynchronousCallIsGivenUpAfterItsTimeout();
    void propertiesThatAreNotAnsweredStayAsTheyWere();
    void propertiesOfAnotherTypeAreAnError();
};

void ConnmanRemoteTest::callIsGivenUpAfterItsTimeout()
{
    MirrorWorld world;
    const ConnmanRemote remote = impatientRemote(world);
    const Fault silent = silence(world);
    QCOMPARE(remote.call(ConnmanNames::GetProperties).errorName(), NoReply);
}

void ConnmanRemoteTest::asynchronousCallIsGivenUpAfterItsTimeout()
{
    MirrorWorld world;
    const ConnmanRemote remote = impatientRemote(world);
    const Fault silent = silence(world);
    QDBusPendingCall call = remote.asyncCall(ConnmanNames::GetProperties);
    call.waitForFinished();
    QCOMPARE(call.error().name(), NoReply);
}

void ConnmanRemoteTest::propertiesThatAreNotAnsweredStayAsTheyWere()
{
    MirrorWorld world;
    const ConnmanRemote remote = impatientRemote(world);
    ConnmanProperties properties(remote, logRemoteTest);
    QVERIFY(!properties.fetch().isValid());
    const QVariantMap before = properties.all();
    QVERIFY(!before.isEmpty());
    const Fault silent = silence(world);
    QCOMPARE(properties.fetch().name(), NoReply);
    QCOMPARE(properties.all(), before);
}

void ConnmanRemoteTest::propertiesOfAnotherTypeAreAnError()
{
    MirrorWorld world;
    const ConnmanRemote remote = impatientRemote(world);
    ConnmanProperties properties(remote, logRemoteTest);
    const Fault odd = world.simulator().injectFault(
        ConnmanNames::ServiceInterface, ConnmanNames::GetProperties, FaultKind::reply({"text"_s}));
    const QDBusError error = properties.fetch();
    QCOMPARE(error.type(), QDBusError::InvalidSignature);
    properties.logFailedFetch(error);
    QCOMPARE(world.complaints().size(), 1);
    QVERIFY(world.complaints().constFirst().startsWith(
        critical("RemoteTest"_s, "Call to GetProperties failed: \"Unexpected reply"_s)));
}

static const Suite<ConnmanRemoteTest> suite;
#include "ConnmanRemoteTest.moc"
