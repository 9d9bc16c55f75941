// The calls that the proxies make: how long they wait, and what a call without an answer leaves behind.

#include "ConnmanRemote.h"
#include "ConnmanFixture.h"
#include "ConnmanNames.h"
#include "ConnmanProperties.h"
#include "MirrorNames.h"
#include "Suite.h"
#include "Text.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QLoggingCategory>
#include <QTest>

using namespace test_support;
using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(logRemoteTest, "RemoteTest", QtCriticalMsg)

const QString NoReply = "org.freedesktop.DBus.Error.NoReply"_s;
/// Shorter than Qt's own 25 s, so that a time-out that is not obeyed fails the test by its own.
constexpr auto Short = 200ms;

Fault silence(ConnmanFixture &fixture)
{
    return fixture.connman().injectFault(ConnmanNames::ServiceInterface, ConnmanNames::GetProperties,
                                         FaultKind::never());
}

ConnmanRemote impatientRemote(ConnmanFixture &fixture)
{
    return {ConnmanFixture::connection(), fixture.addService(Identifier).path(),
            ConnmanNames::ServiceInterface, Short};
}

} // namespace

class ConnmanRemoteTest : public ConnmanFixture
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
    const ConnmanRemote remote = impatientRemote(*this);
    const Fault silent = silence(*this);
    QCOMPARE(remote.call(ConnmanNames::GetProperties).errorName(), NoReply);
}

void ConnmanRemoteTest::asynchronousCallIsGivenUpAfterItsTimeout()
{
    const ConnmanRemote remote = impatientRemote(*this);
    const Fault silent = silence(*this);
    QDBusPendingCall call = remote.asyncCall(ConnmanNames::GetProperties);
    call.waitForFinished();
    QCOMPARE(call.error().name(), NoReply);
}

void ConnmanRemoteTest::propertiesThatAreNotAnsweredStayAsTheyWere()
{
    const ConnmanRemote remote = impatientRemote(*this);
    ConnmanProperties properties(remote, logRemoteTest);
    QVERIFY(!properties.fetch().isValid());
    const QVariantMap before = properties.all();
    QVERIFY(!before.isEmpty());
    const Fault silent = silence(*this);
    QCOMPARE(properties.fetch().name(), NoReply);
    QCOMPARE(properties.all(), before);
}

void ConnmanRemoteTest::propertiesOfAnotherTypeAreAnError()
{
    const ConnmanRemote remote = impatientRemote(*this);
    ConnmanProperties properties(remote, logRemoteTest);
    const Fault odd = connman().injectFault(ConnmanNames::ServiceInterface, ConnmanNames::GetProperties,
                                            FaultKind::reply({"text"_s}));
    const QDBusError error = properties.fetch();
    QCOMPARE(error.type(), QDBusError::InvalidSignature);
    properties.logFailedFetch(error);
    QCOMPARE(complaints().size(), 1);
    QVERIFY(complaints().constFirst().startsWith(
        critical("RemoteTest"_s, "Call to GetProperties failed: \"Unexpected reply"_s)));
}

static const Suite<ConnmanRemoteTest> connmanRemoteTest;
#include "ConnmanRemoteTest.moc"
