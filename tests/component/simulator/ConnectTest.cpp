// Connecting and disconnecting: ConnMan's states, their order, and its answers.

#include "NetworkFixture.h"
#include "Suite.h"
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString otherId = QStringLiteral("wifi_020000000200_4f74686572_managed_none");
} // namespace

class ConnectTest : public NetworkFixture
{
    Q_OBJECT

private slots:
    void openNetworkAsksNobody();
    void readyIsToldBeforeTheAddresses();
    void favouriteAsksNobody();
    void rawFavouriteAsksNobody();
    void secondConnectIsInProgress();
    void connectedServiceIsAlreadyConnected();
    void disconnectGoesThroughItsStates();
    void idleServiceIsNotConnected();
    void disconnectAbortsTheConnect();
    void disconnectTakesTheQuestionBack();
    void anotherNetworkTakesItsPlace();
    void serviceWithoutAnyIpHasNoCarrier();
    void vanishedNetworkDisconnects();
    void networkOutOfReachDisconnectsAndIsNotFound();
    void knownNetworkBackInReachIsJoinedAgain();
    void hiddenNetworkOutOfReachIsNotListed();
    void removedNetworkIsForgotten();
    void ethernetCannotBeRemoved();
    void disconnectedByTheUserStaysSo();
    void nextFavouriteFollows();
};

void ConnectTest::openNetworkAsksNobody()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForState(openId, QStringLiteral("online")));
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')),
             QStringLiteral("association configuration ready online"));
    QCOMPARE(m_agent->lines(), QStringList());
}

void ConnectTest::readyIsToldBeforeTheAddresses()
{
    addNetwork({{QStringLiteral("security"), QStringLiteral("none")},
                {QStringLiteral("address"), QStringLiteral("192.168.10.77")}});
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForSignal(QStringLiteral("PropertyChanged(\"Nameservers\"")));
    const QStringList told = m_client->signalLines();
    const int ready = told.indexOf(openId + QStringLiteral(" PropertyChanged(\"State\", <\"ready\">)"));
    QVERIFY(ready >= 0);
    QCOMPARE(
        told.mid(ready, 9),
        (QStringList{openId + QStringLiteral(" PropertyChanged(\"State\", <\"ready\">)"),
                     openId + QStringLiteral(" PropertyChanged(\"Favorite\", <true>)"),
                     openId + QStringLiteral(" PropertyChanged(\"Domains\", <@as []>)"),
                     openId + QStringLiteral(" PropertyChanged(\"Proxy\", <{\"Method\": <\"direct\">}>)"),
                     QStringLiteral("wifi PropertyChanged(\"Connected\", <true>)"),
                     QStringLiteral(" PropertyChanged(\"State\", <\"ready\">)"),
                     openId + QStringLiteral(" PropertyChanged(\"IPv4\", <{\"Address\": <\"192.168.10.77\">, "
                                             "\"Gateway\": <\"192.168.10.1\">, \"Method\": <\"dhcp\">, "
                                             "\"Netmask\": <\"255.255.255.0\">}>)"),
                     openId + QStringLiteral(" PropertyChanged(\"IPv6\", <@a{sv} {}>)"),
                     openId + QStringLiteral(" PropertyChanged(\"Nameservers\", <[\"192.168.10.1\"]>)")}));
    QCOMPARE(m_client->property(openId, QStringLiteral("AutoConnect")), QStringLiteral("true"));
}

void ConnectTest::favouriteAsksNobody()
{
    addNetwork();
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(disconnectService(pskId).text(), QString());
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_agent->lines().size(), 1);
}

void ConnectTest::rawFavouriteAsksNobody()
{
    m_simulator->addService(QStringLiteral("wifi_raw_managed_psk"), with(QStringLiteral("Favorite"), true));
    QCOMPARE(connectService(QStringLiteral("wifi_raw_managed_psk")).text(), QString());
    QCOMPARE(m_agent->lines(), QStringList());
}

void ConnectTest::secondConnectIsInProgress()
{
    m_simulator->setTiming(QStringLiteral("association"), 60000);
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    const std::unique_ptr<PendingAnswer> first = m_client->startService(openId, QStringLiteral("Connect"));
    QVERIFY(m_client->waitForState(openId, QStringLiteral("association")));
    QCOMPARE(connectService(openId).text(), QStringLiteral("net.connman.Error.InProgress: In progress"));
    QVERIFY(!first->hasCome());
}

void ConnectTest::connectedServiceIsAlreadyConnected()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    QCOMPARE(connectService(openId).text(), QString());
    QCOMPARE(connectService(openId).text(),
             QStringLiteral("net.connman.Error.AlreadyConnected: Already connected"));
}

void ConnectTest::disconnectGoesThroughItsStates()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForState(openId, QStringLiteral("online")));
    m_client->clear();
    QCOMPARE(disconnectService(openId).text(), QString());
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')),
             QStringLiteral("configuration disconnect idle"));
    QCOMPARE(m_client->property(openId, QStringLiteral("IPv4")), QStringLiteral("@a{sv} {}"));
    QCOMPARE(m_client->property(openId, QStringLiteral("Nameservers")), QStringLiteral("@as []"));
    QCOMPARE(m_client->property(openId, QStringLiteral("Favorite")), QStringLiteral("true"));
}

void ConnectTest::idleServiceIsNotConnected()
{
    addNetwork();
    QCOMPARE(disconnectService(pskId).text(),
             QStringLiteral("net.connman.Error.NotConnected: Not connected"));
}

void ConnectTest::disconnectAbortsTheConnect()
{
    m_simulator->setTiming(QStringLiteral("association"), 60000);
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(openId, QStringLiteral("Connect"));
    QVERIFY(m_client->waitForState(openId, QStringLiteral("association")));
    QCOMPARE(disconnectService(openId).text(), QString());
    QCOMPARE(pending->wait().text(), aborted);
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')), QStringLiteral("association disconnect idle"));
}

void ConnectTest::disconnectTakesTheQuestionBack()
{
    addNetwork();
    m_agent->planInputSilence();
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(pskId, QStringLiteral("Connect"));
    QVERIFY(m_agent->waitForLine(QStringLiteral("RequestInput")));
    QCOMPARE(disconnectService(pskId).text(),
             QStringLiteral("net.connman.Error.NotConnected: Not connected"));
    QVERIFY(m_agent->waitForLine(QStringLiteral("Cancel()")));
    QCOMPARE(pending->wait().text(), timedOut);
}

void ConnectTest::anotherNetworkTakesItsPlace()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    addNetwork({{QStringLiteral("ssid"), QStringLiteral("Other")},
                {QStringLiteral("security"), QStringLiteral("none")}});
    QCOMPARE(connectService(openId).text(), QString());
    QCOMPARE(connectService(otherId).text(), QString());
    QCOMPARE(m_client->property(openId, QStringLiteral("State")), QStringLiteral("\"idle\""));
    QVERIFY(m_client->waitForState(otherId, QStringLiteral("online")));
}

void ConnectTest::serviceWithoutAnyIpHasNoCarrier()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    const QVariantMap off = with(QStringLiteral("Method"), QStringLiteral("off"));
    QCOMPARE(m_client->setServiceProperty(openId, QStringLiteral("IPv4.Configuration"), off).text(),
             QString());
    QCOMPARE(m_client->setServiceProperty(openId, QStringLiteral("IPv6.Configuration"), off).text(),
             QString());
    QCOMPARE(connectService(openId).text(), QStringLiteral("net.connman.Error.NoCarrier: No carrier"));
}

void ConnectTest::vanishedNetworkDisconnects()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForState(openId, QStringLiteral("online")));
    m_client->clear();
    m_simulator->removeNetwork(ssid);
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged(@a(oa{sv}) [], [objectpath")));
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')),
             QStringLiteral("configuration disconnect idle"));
}

void ConnectTest::networkOutOfReachDisconnectsAndIsNotFound()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForState(openId, QStringLiteral("online")));
    m_client->clear();
    m_simulator->setInReach(ssid, false);
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged(@a(oa{sv}) [], [objectpath")));
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')),
             QStringLiteral("configuration disconnect idle"));
    QVERIFY(!m_client->technology(QStringLiteral("wifi"), QStringLiteral("Scan")).isError);
    QCOMPARE(m_simulator->services(), QStringList());
}

void ConnectTest::knownNetworkBackInReachIsJoinedAgain()
{
    addNetwork();
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QVERIFY(m_client->waitForState(pskId, QStringLiteral("online")));
    const QString address = m_client->property(pskId, QStringLiteral("IPv4"));
    m_simulator->setInReach(ssid, false);
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged(@a(oa{sv}) [], [objectpath")));
    m_client->clear();
    m_simulator->setInReach(ssid, true);
    QVERIFY(m_client->waitForState(pskId, QStringLiteral("online")));
    QCOMPARE(m_client->property(pskId, QStringLiteral("IPv4")), address);
    QCOMPARE(m_agent->lines(), QStringList{request(pskId, pskFields)});
}

void ConnectTest::hiddenNetworkOutOfReachIsNotListed()
{
    const QString hiddenId = addNetwork(with(QStringLiteral("hidden"), true));
    QCOMPARE(m_simulator->services(), QStringList{hiddenId});
    m_simulator->setInReach(ssid, false);
    QCOMPARE(m_simulator->services(), QStringList());
    m_simulator->setInReach(ssid, true);
    QCOMPARE(m_simulator->services(), QStringList{hiddenId});
}

void ConnectTest::removedNetworkIsForgotten()
{
    addNetwork();
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_client->service(pskId, QStringLiteral("Remove")).text(), QString());
    QVERIFY(m_client->waitForSignal(pskId + QStringLiteral(" PropertyChanged(\"Favorite\", <false>)")));
    QCOMPARE(m_client->property(pskId, QStringLiteral("State")), QStringLiteral("\"idle\""));
    QCOMPARE(m_client->property(pskId, QStringLiteral("AutoConnect")), QStringLiteral("false"));
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_agent->lines(), (QStringList{request(pskId, pskFields), request(pskId, pskFields)}));
}

void ConnectTest::ethernetCannotBeRemoved()
{
    m_simulator->setCable(true);
    QCOMPARE(
        m_client->service(QStringLiteral("ethernet_020000000100_cable"), QStringLiteral("Remove")).text(),
        QStringLiteral("net.connman.Error.NotSupported: Not supported"));
}

void ConnectTest::disconnectedByTheUserStaysSo()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    QCOMPARE(connectService(openId).text(), QString());
    QCOMPARE(disconnectService(openId).text(), QString());
    m_client->clear();
    QVERIFY(!m_client->technology(QStringLiteral("wifi"), QStringLiteral("Scan")).isError);
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged")));
    QCOMPARE(m_client->states(openId), QStringList());
}

void ConnectTest::nextFavouriteFollows()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("none")));
    addNetwork({{QStringLiteral("ssid"), QStringLiteral("Other")},
                {QStringLiteral("security"), QStringLiteral("none")}});
    QCOMPARE(connectService(openId).text(), QString());
    QCOMPARE(connectService(otherId).text(), QString());
    m_client->clear();
    QCOMPARE(disconnectService(otherId).text(), QString());
    QVERIFY(m_client->waitForState(openId, QStringLiteral("online")));
}

static const Suite<ConnectTest> suite;
#include "ConnectTest.moc"
