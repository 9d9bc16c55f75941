// Connecting and disconnecting: ConnMan's states, their order, and its answers.

#include "NetworkFixture.h"
#include "Suite.h"
#include "Text.h"
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString neighbourId = "wifi_020000000200_4f74686572_managed_none"_s;
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
    addNetwork(with("security"_s, "none"_s));
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForState(openId, "online"_s));
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')), "association configuration ready online"_s);
    QCOMPARE(m_agent->lines(), QStringList());
}

void ConnectTest::readyIsToldBeforeTheAddresses()
{
    addNetwork({{"security"_s, "none"_s}, {"address"_s, "192.168.10.77"_s}});
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForSignal("PropertyChanged(\"Nameservers\""_s));
    const QStringList told = m_client->signalLines();
    const int ready = told.indexOf(openId + " PropertyChanged(\"State\", <\"ready\">)"_s);
    QVERIFY(ready >= 0);
    QCOMPARE(told.mid(ready),
             (QStringList{openId + " PropertyChanged(\"State\", <\"ready\">)"_s,
                          openId + " PropertyChanged(\"Favorite\", <true>)"_s,
                          openId + " PropertyChanged(\"Domains\", <@as []>)"_s,
                          openId + " PropertyChanged(\"Proxy\", <@a{sv} {}>)"_s,
                          "wifi PropertyChanged(\"Connected\", <true>)"_s,
                          " PropertyChanged(\"State\", <\"ready\">)"_s,
                          openId + " PropertyChanged(\"IPv4\", <{\"Address\": <\"192.168.10.77\">, "
                                   "\"Method\": <\"dhcp\">, \"Netmask\": <\"255.255.255.0\">}>)"_s,
                          openId + " PropertyChanged(\"IPv4\", <{\"Address\": <\"192.168.10.77\">, "
                                   "\"Gateway\": <\"192.168.10.1\">, \"Method\": <\"dhcp\">, "
                                   "\"Netmask\": <\"255.255.255.0\">}>)"_s,
                          openId + " PropertyChanged(\"Nameservers\", <[\"192.168.10.1\"]>)"_s}));
    QCOMPARE(m_client->property(openId, "AutoConnect"_s), "true"_s);
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
    m_simulator->addService("wifi_raw_managed_psk"_s, with("Favorite"_s, true));
    QCOMPARE(connectService("wifi_raw_managed_psk"_s).text(), QString());
    QCOMPARE(m_agent->lines(), QStringList());
}

void ConnectTest::secondConnectIsInProgress()
{
    m_simulator->setTiming("association"_s, 60000);
    addNetwork(with("security"_s, "none"_s));
    const std::unique_ptr<PendingAnswer> first = m_client->startService(openId, "Connect"_s);
    QVERIFY(m_client->waitForState(openId, "association"_s));
    QCOMPARE(connectService(openId).text(), "net.connman.Error.InProgress: In progress"_s);
    QVERIFY(!first->hasCome());
}

void ConnectTest::connectedServiceIsAlreadyConnected()
{
    addNetwork(with("security"_s, "none"_s));
    QCOMPARE(connectService(openId).text(), QString());
    QCOMPARE(connectService(openId).text(), "net.connman.Error.AlreadyConnected: Already connected"_s);
}

void ConnectTest::disconnectGoesThroughItsStates()
{
    addNetwork(with("security"_s, "none"_s));
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForState(openId, "online"_s));
    m_client->clear();
    QCOMPARE(disconnectService(openId).text(), QString());
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')), "configuration disconnect idle"_s);
    QCOMPARE(m_client->property(openId, "IPv4"_s), "@a{sv} {}"_s);
    QCOMPARE(m_client->property(openId, "Nameservers"_s), "@as []"_s);
    QCOMPARE(m_client->property(openId, "Favorite"_s), "true"_s);
}

void ConnectTest::idleServiceIsNotConnected()
{
    addNetwork();
    QCOMPARE(disconnectService(pskId).text(), "net.connman.Error.NotConnected: Not connected"_s);
}

void ConnectTest::disconnectAbortsTheConnect()
{
    m_simulator->setTiming("association"_s, 60000);
    addNetwork(with("security"_s, "none"_s));
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(openId, "Connect"_s);
    QVERIFY(m_client->waitForState(openId, "association"_s));
    QCOMPARE(disconnectService(openId).text(), QString());
    QCOMPARE(pending->wait().text(), aborted);
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')), "association disconnect idle"_s);
}

void ConnectTest::disconnectTakesTheQuestionBack()
{
    addNetwork();
    m_agent->planInputSilence();
    const std::unique_ptr<PendingAnswer> pending = m_client->startService(pskId, "Connect"_s);
    QVERIFY(m_agent->waitForLine("RequestInput"_s));
    QCOMPARE(disconnectService(pskId).text(), "net.connman.Error.NotConnected: Not connected"_s);
    QVERIFY(m_agent->waitForLine("Cancel()"_s));
    QCOMPARE(pending->wait().text(), timedOut);
}

void ConnectTest::anotherNetworkTakesItsPlace()
{
    addNetwork(with("security"_s, "none"_s));
    addNetwork({{"ssid"_s, "Other"_s}, {"security"_s, "none"_s}});
    QCOMPARE(connectService(openId).text(), QString());
    QCOMPARE(connectService(neighbourId).text(), QString());
    QCOMPARE(m_client->property(openId, "State"_s), "\"idle\""_s);
    QVERIFY(m_client->waitForState(neighbourId, "online"_s));
}

void ConnectTest::serviceWithoutAnyIpHasNoCarrier()
{
    addNetwork(with("security"_s, "none"_s));
    const QVariantMap off = with("Method"_s, "off"_s);
    QCOMPARE(m_client->setServiceProperty(openId, "IPv4.Configuration"_s, off).text(), QString());
    QCOMPARE(m_client->setServiceProperty(openId, "IPv6.Configuration"_s, off).text(), QString());
    QCOMPARE(connectService(openId).text(), "net.connman.Error.NoCarrier: No carrier"_s);
}

void ConnectTest::vanishedNetworkDisconnects()
{
    addNetwork(with("security"_s, "none"_s));
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForState(openId, "online"_s));
    m_client->clear();
    m_simulator->removeNetwork(ssid);
    QVERIFY(m_client->waitForSignal("ServicesChanged(@a(oa{sv}) [], [objectpath"_s));
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')), "configuration disconnect idle"_s);
}

void ConnectTest::networkOutOfReachDisconnectsAndIsNotFound()
{
    addNetwork(with("security"_s, "none"_s));
    QCOMPARE(connectService(openId).text(), QString());
    QVERIFY(m_client->waitForState(openId, "online"_s));
    m_client->clear();
    m_simulator->setInReach(ssid, false);
    QVERIFY(m_client->waitForSignal("ServicesChanged(@a(oa{sv}) [], [objectpath"_s));
    QCOMPARE(m_client->states(openId).join(QLatin1Char(' ')), "configuration disconnect idle"_s);
    QVERIFY(!m_client->technology("wifi"_s, "Scan"_s).isError);
    QCOMPARE(m_simulator->services(), QStringList());
}

void ConnectTest::knownNetworkBackInReachIsJoinedAgain()
{
    addNetwork();
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QVERIFY(m_client->waitForState(pskId, "online"_s));
    const QString address = m_client->property(pskId, "IPv4"_s);
    m_simulator->setInReach(ssid, false);
    QVERIFY(m_client->waitForSignal("ServicesChanged(@a(oa{sv}) [], [objectpath"_s));
    m_client->clear();
    m_simulator->setInReach(ssid, true);
    QVERIFY(m_client->waitForState(pskId, "online"_s));
    QCOMPARE(m_client->property(pskId, "IPv4"_s), address);
    QCOMPARE(m_agent->lines(), QStringList{request(pskId, pskFields)});
}

void ConnectTest::hiddenNetworkOutOfReachIsNotListed()
{
    const QString identifier = addNetwork(with("hidden"_s, true));
    QCOMPARE(m_simulator->services(), QStringList{identifier});
    m_simulator->setInReach(ssid, false);
    QCOMPARE(m_simulator->services(), QStringList());
    m_simulator->setInReach(ssid, true);
    QCOMPARE(m_simulator->services(), QStringList{identifier});
}

void ConnectTest::removedNetworkIsForgotten()
{
    addNetwork();
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_client->service(pskId, "Remove"_s).text(), QString());
    QVERIFY(m_client->waitForSignal(pskId + " PropertyChanged(\"Favorite\", <false>)"_s));
    QCOMPARE(m_client->property(pskId, "State"_s), "\"idle\""_s);
    QCOMPARE(m_client->property(pskId, "AutoConnect"_s), "false"_s);
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(m_agent->lines(), (QStringList{request(pskId, pskFields), request(pskId, pskFields)}));
}

void ConnectTest::ethernetCannotBeRemoved()
{
    m_simulator->setCable(true);
    QCOMPARE(m_client->service("ethernet_020000000100_cable"_s, "Remove"_s).text(),
             "net.connman.Error.NotSupported: Not supported"_s);
}

void ConnectTest::disconnectedByTheUserStaysSo()
{
    addNetwork(with("security"_s, "none"_s));
    addNetwork({{"ssid"_s, "Other"_s}, {"security"_s, "none"_s}}); // a list of one has no order to tell
    QCOMPARE(connectService(openId).text(), QString());
    QCOMPARE(disconnectService(openId).text(), QString());
    m_client->clear();
    QVERIFY(!m_client->technology("wifi"_s, "Scan"_s).isError);
    QVERIFY(m_client->waitForSignal("ServicesChanged"_s));
    QCOMPARE(m_client->states(openId), QStringList());
}

void ConnectTest::nextFavouriteFollows()
{
    addNetwork(with("security"_s, "none"_s));
    addNetwork({{"ssid"_s, "Other"_s}, {"security"_s, "none"_s}});
    QCOMPARE(connectService(openId).text(), QString());
    QCOMPARE(connectService(neighbourId).text(), QString());
    m_client->clear();
    QCOMPARE(disconnectService(neighbourId).text(), QString());
    QVERIFY(m_client->waitForState(openId, "online"_s));
}

static const Suite<ConnectTest> connectTest;
#include "ConnectTest.moc"
