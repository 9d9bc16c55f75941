// What can be made to go wrong: every kind of fault.

#include "DeviceFixture.h"
#include "Suite.h"
#include "Text.h"
#include <QElapsedTimer>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString manager = "net.connman.Manager"_s;
const QString service = "net.connman.Service"_s;
const QString getServices = "GetServices"_s;
const QString noReply = "org.freedesktop.DBus.Error.NoReply"_s;
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
};

void FaultTest::errorIsAnsweredWithoutEffect()
{
    m_simulator->addService(rawId, {{"Favorite"_s, true}});
    const Fault fault =
        m_simulator->injectFault(service, "Remove"_s, FaultKind::error("an.Error"_s, "some text"_s));
    QCOMPARE(m_client->service(rawId, "Remove"_s).text(), "an.Error: some text"_s);
    QCOMPARE(m_client->property(rawId, "Favorite"_s), "true"_s);
    QCOMPARE(fault.fired(), 1U);
}

void FaultTest::replyIsAnsweredWithoutEffect()
{
    m_simulator->addService(rawId, {{"Favorite"_s, true}});
    const Fault fault = m_simulator->injectFault(service, "Remove"_s, FaultKind::reply({}));
    QCOMPARE(m_client->service(rawId, "Remove"_s).text(), QString());
    QCOMPARE(m_client->property(rawId, "Favorite"_s), "true"_s);
}

void FaultTest::replyKeepsAnyType()
{
    const Fault fault =
        m_simulator->injectFault(manager, getServices,
                                 FaultKind::reply({QVariant::fromValue(QList<int>{1, 2}),
                                                   QVariant::fromValue<uchar>(3), QVariantMap()}));
    const Answer answer = m_client->manager(getServices);
    QCOMPARE(answer.text(), "[1, 2], byte 0x03, @a{sv} {}"_s);
    QCOMPARE(answer.signature, "aiya{sv}"_s);
}

void FaultTest::delayedCallHasItsEffectLater()
{
    m_simulator->addService(rawId, {{"Favorite"_s, true}});
    const Fault fault = m_simulator->injectFault(service, "Remove"_s, FaultKind::delay(300));
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(rawId, "Remove"_s);
    QElapsedTimer elapsed;
    elapsed.start();
    QVERIFY(m_simulator->waitForCall("/net/connman/service/wifi_raw_managed_psk "
                                     "net.connman.Service.Remove"_s));
    QCOMPARE(m_client->property(rawId, "Favorite"_s), "true"_s);
    QVERIFY(!pending->wait().isError);
    QVERIFY2(elapsed.elapsed() >= 290, qPrintable(QString::number(elapsed.elapsed())));
    QCOMPARE(m_client->property(rawId, "Favorite"_s), "false"_s);
}

void FaultTest::lateErrorLetsOtherCallsGoFirst()
{
    m_simulator->addService(rawId, {});
    const FaultKind refusal = FaultKind::error("net.connman.Error.Failed"_s, "no"_s);
    const Fault fault = m_simulator->injectFault(service, "Remove"_s, refusal.after(300));
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(rawId, "Remove"_s);
    QVERIFY(!m_client->manager(getServices).isError);
    QVERIFY(!pending->hasCome());
    QVERIFY(pending->wait().isError);
}

void FaultTest::neverIsNotAnsweredAndHasNoEffect()
{
    m_simulator->addService(rawId, {{"Favorite"_s, true}});
    const Fault fault = m_simulator->injectFault(service, "Remove"_s, FaultKind::never());
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(rawId, "Remove"_s);
    // A later call on the same connection is answered: the first one would have been by then.
    QVERIFY(!m_client->manager(getServices).isError);
    QVERIFY(!pending->hasCome());
    QCOMPARE(m_client->property(rawId, "Favorite"_s), "true"_s);
}

void FaultTest::vanishDropsTheConnectionInTheMiddleOfTheCall()
{
    m_simulator->addService(rawId);
    const Fault fault = m_simulator->injectFault(service, "Connect"_s, FaultKind::vanish());
    const Answer answer = m_client->service(rawId, "Connect"_s);
    QVERIFY2(answer.error.startsWith(noReply), qPrintable(answer.error));
    QVERIFY(!m_client->isOnTheBus(connman));
    QVERIFY(m_client->isOnTheBus(configurationManager));
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
    const Fault fault = m_simulator->injectFault(manager, getServices, FaultKind::error("a.B"_s, {}), {}, 2);
    QVERIFY(m_client->manager(getServices).isError);
    QVERIFY(m_client->manager(getServices).isError);
    QVERIFY(!m_client->manager(getServices).isError);
    QCOMPARE(fault.fired(), 2U);
}

void FaultTest::countZeroFiresForEver()
{
    const Fault fault = m_simulator->injectFault(manager, getServices, FaultKind::error("a.B"_s, {}), {}, 0);
    for (uint times = 1; times <= 5; ++times) {
        QVERIFY(m_client->manager(getServices).isError);
        QCOMPARE(fault.fired(), times);
    }
}

void FaultTest::pathLimitsWhereItFires()
{
    m_simulator->addService(rawId);
    m_simulator->addService(otherId);
    const Fault fault = m_simulator->injectFault(service, "GetProperties"_s, FaultKind::error("a.B"_s, {}),
                                                 "/net/connman/service/wifi_other_managed_psk"_s);
    QVERIFY(!m_client->service(rawId, "GetProperties"_s).isError);
    QCOMPARE(fault.fired(), 0U);
    QVERIFY(m_client->service(otherId, "GetProperties"_s).isError);
}

void FaultTest::olderFaultFiresFirst()
{
    const Fault first = m_simulator->injectFault(manager, getServices, FaultKind::error("a.First"_s, {}));
    const Fault second = m_simulator->injectFault(manager, getServices, FaultKind::error("a.Second"_s, {}));
    QCOMPARE(m_client->manager(getServices).text(), "a.First: "_s);
    QCOMPARE(m_client->manager(getServices).text(), "a.Second: "_s);
}

void FaultTest::clearedFaultFiresNoMore()
{
    const Fault fault = m_simulator->injectFault(manager, getServices, FaultKind::error("a.B"_s, {}), {}, 0);
    QVERIFY(m_client->manager(getServices).isError);
    m_simulator->clearFaults();
    QVERIFY(!m_client->manager(getServices).isError);
    QCOMPARE(fault.fired(), 1U);
}

void FaultTest::faultedCallIsRecorded()
{
    const Fault fault = m_simulator->injectFault(manager, getServices, FaultKind::error("a.B"_s, {}));
    m_client->manager(getServices);
    QCOMPARE(m_simulator->calls(), QStringList{"/ net.connman.Manager.GetServices()"_s});
}

void FaultTest::speechAndConfigurationCanFailToo_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariantList>("arguments");
    QTest::newRow("speech") << speech << "speakFromId"_s << QVariantList{"id"_s, QVariantMap()};
    QTest::newRow("configuration") << configurationManager << "process"_s << QVariantList{QVariantMap()};
}

void FaultTest::speechAndConfigurationCanFailToo()
{
    QFETCH(QString, name);
    QFETCH(QString, member);
    QFETCH(QVariantList, arguments);
    const Fault fault = m_simulator->injectFault(name, member, FaultKind::error("a.B"_s, {}));
    QCOMPARE(m_client->call(name, "/"_s, name, member, arguments).text(), "a.B: "_s);
}

void FaultTest::faultThatDidNotFireFailsTheTest()
{
    Fault fault = m_simulator->injectFault(manager, getServices, FaultKind::never());
    QCOMPARE(fault.fired(), 0U);
    QEXPECT_FAIL("", "it did not fire", Continue);
    fault.verify();
}

static const Suite<FaultTest> faultTest;
#include "FaultTest.moc"
