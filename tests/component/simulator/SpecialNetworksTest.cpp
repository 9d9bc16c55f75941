// Joining networks with WPS, hidden ones and enterprise ones: the agent's other dialogues.

#include "NetworkFixture.h"
#include <QtTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString enterpriseId = QStringLiteral("wifi_020000000200_486f6d65_managed_ieee8021x");
const QString hiddenId = QStringLiteral("wifi_020000000200_hidden_managed_psk");
const QString pin = QStringLiteral("12345670");
} // namespace

class SpecialNetworksTest : public NetworkFixture
{
    Q_OBJECT

private slots:
    void wpsOffersBothWays();
    void wpsByPinConnects();
    void wpsByButtonConnects();
    void unusablePinFails();
    void wrongPinTriesUntilTheTimeIsUp();
    void hiddenNetworkHasNoName();
    void hiddenNetworkAppearsUnderItsName();
    void hiddenNetworkByBytesOfItsName();
    void hiddenNetworkThatIsNotThereFails();
    void hiddenNetworkWithoutANameIsRefused();
    void hiddenNetworkRefusedByTheAgent_data();
    void hiddenNetworkRefusedByTheAgent();
    void hiddenNetworkWithAWrongPassphraseFails();
    void enterpriseAsksForIdentityAndPassphrase();
    void wrongIdentityFails();
    void unprovisionedEnterpriseIsRefused();
};

void SpecialNetworksTest::wpsOffersBothWays()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("wps")));
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(
        m_agent->lines(),
        QStringList{request(pskId, "\"Passphrase\": <{\"Type\": <\"psk\">, \"Requirement\": <\"mandatory\">, "
                                   "\"Alternates\": <[\"WPS\"]>}>, "
                                   "\"WPS\": <{\"Type\": <\"wpspin\">, \"Requirement\": <\"alternate\">}>")});
    QCOMPARE(m_client->property(pskId, QStringLiteral("Security")), QStringLiteral("[\"psk\", \"wps\"]"));
}

void SpecialNetworksTest::wpsByPinConnects()
{
    addNetwork({{QStringLiteral("security"), QStringLiteral("wps")}, {QStringLiteral("pin"), pin}});
    m_agent->planInput(with(QStringLiteral("WPS"), pin));
    QCOMPARE(connectService(pskId).text(), QString());
}

void SpecialNetworksTest::wpsByButtonConnects()
{
    addNetwork(with(QStringLiteral("security"), QStringLiteral("wps")));
    m_agent->planInput(with(QStringLiteral("WPS"), QString()));
    QCOMPARE(connectService(pskId).text(), QString());
}

void SpecialNetworksTest::unusablePinFails()
{
    addNetwork({{QStringLiteral("security"), QStringLiteral("wps")}, {QStringLiteral("pin"), pin}});
    m_agent->planInput(with(QStringLiteral("WPS"), QStringLiteral("123")));
    QCOMPARE(connectService(pskId).text(), failed);
    QVERIFY(m_agent->waitForLine(QStringLiteral("invalid-key")));
}

void SpecialNetworksTest::wrongPinTriesUntilTheTimeIsUp()
{
    m_simulator->setTiming(QStringLiteral("connect"), 200);
    addNetwork({{QStringLiteral("security"), QStringLiteral("wps")}, {QStringLiteral("pin"), pin}});
    m_agent->planInput(with(QStringLiteral("WPS"), QStringLiteral("00000000")));
    QCOMPARE(connectService(pskId).text(), aborted);
    QVERIFY(m_client->waitForState(pskId, QStringLiteral("failure")));
    QCOMPARE(m_client->states(pskId).join(QLatin1Char(' ')),
             QStringLiteral("association disconnect idle failure"));
    QCOMPARE(m_agent->lines().filter(QStringLiteral("ReportError")), QStringList());
}

void SpecialNetworksTest::hiddenNetworkHasNoName()
{
    QCOMPARE(addNetwork(with(QStringLiteral("hidden"), true)), hiddenId);
    QCOMPARE(m_client->property(hiddenId, QStringLiteral("Name")), QString());
    QCOMPARE(m_client->property(hiddenId, QStringLiteral("Security")), QStringLiteral("[\"psk\"]"));
}

void SpecialNetworksTest::hiddenNetworkAppearsUnderItsName()
{
    addNetwork(with(QStringLiteral("hidden"), true));
    m_agent->planInput({{QStringLiteral("Name"), ssid}, {passphrase, rightPassphrase}});
    QCOMPARE(connectService(hiddenId).text(), QString());
    QCOMPARE(m_agent->lines(),
             QStringList{request(
                 hiddenId, "\"Name\": <{\"Type\": <\"string\">, \"Requirement\": <\"mandatory\">, "
                           "\"Alternates\": <[\"SSID\"]>}>, "
                           "\"SSID\": <{\"Type\": <\"ssid\">, \"Requirement\": <\"alternate\">}>, "
                           "\"Passphrase\": <{\"Type\": <\"psk\">, \"Requirement\": <\"mandatory\">}>")});
    QVERIFY(m_client->waitForSignal(QStringLiteral("service/%1\", {\"Type\"").arg(pskId)));
    QCOMPARE(m_client->property(pskId, QStringLiteral("Favorite")), QStringLiteral("true"));
    QCOMPARE(m_client->property(pskId, QStringLiteral("Name")), QStringLiteral("\"Home\""));
    QCOMPARE(m_client->property(hiddenId, QStringLiteral("State")), QStringLiteral("\"idle\""));
}

void SpecialNetworksTest::hiddenNetworkByBytesOfItsName()
{
    addNetwork(with(QStringLiteral("hidden"), true));
    m_agent->planInput({{QStringLiteral("SSID"), ssid.toUtf8()}, {passphrase, rightPassphrase}});
    QCOMPARE(connectService(hiddenId).text(), QString());
    QCOMPARE(m_client->property(pskId, QStringLiteral("Favorite")), QStringLiteral("true"));
}

void SpecialNetworksTest::hiddenNetworkThatIsNotThereFails()
{
    addNetwork(with(QStringLiteral("hidden"), true));
    m_agent->planInput(
        {{QStringLiteral("Name"), QStringLiteral("Elsewhere")}, {passphrase, rightPassphrase}});
    QCOMPARE(connectService(hiddenId).text(), failed);
}

void SpecialNetworksTest::hiddenNetworkWithoutANameIsRefused()
{
    addNetwork(with(QStringLiteral("hidden"), true));
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(hiddenId).text(), invalidArguments);
}

void SpecialNetworksTest::hiddenNetworkRefusedByTheAgent_data()
{
    addAgentRefusals();
}

void SpecialNetworksTest::hiddenNetworkRefusedByTheAgent()
{
    QFETCH(QString, refusal);
    QFETCH(QString, error);
    addNetwork(with(QStringLiteral("hidden"), true));
    m_agent->planInputError(refusal);
    QCOMPARE(connectService(hiddenId).text(), error);
}

void SpecialNetworksTest::hiddenNetworkWithAWrongPassphraseFails()
{
    addNetwork(with(QStringLiteral("hidden"), true));
    m_agent->planInput({{QStringLiteral("Name"), ssid}, {passphrase, QStringLiteral("wrong passphrase")}});
    QCOMPARE(connectService(hiddenId).text(), failed);
    QVERIFY(m_agent->waitForLine(
        QStringLiteral("ReportError(objectpath \"/net/connman/service/%1\"").arg(pskId)));
}

void SpecialNetworksTest::enterpriseAsksForIdentityAndPassphrase()
{
    addNetwork({{QStringLiteral("security"), QStringLiteral("ieee8021x")},
                {QStringLiteral("identity"), QStringLiteral("me")}});
    m_agent->planInput({{QStringLiteral("Identity"), QStringLiteral("me")}, {passphrase, rightPassphrase}});
    QCOMPARE(connectService(enterpriseId).text(), QString());
    QCOMPARE(m_agent->lines(),
             QStringList{request(
                 enterpriseId,
                 "\"Identity\": <{\"Type\": <\"string\">, \"Requirement\": <\"mandatory\">}>, "
                 "\"Passphrase\": <{\"Type\": <\"passphrase\">, \"Requirement\": <\"mandatory\">}>")});
}

void SpecialNetworksTest::wrongIdentityFails()
{
    addNetwork({{QStringLiteral("security"), QStringLiteral("ieee8021x")},
                {QStringLiteral("identity"), QStringLiteral("me")}});
    m_agent->planInput({{QStringLiteral("Identity"), QStringLiteral("you")}, {passphrase, rightPassphrase}});
    QCOMPARE(connectService(enterpriseId).text(), failed);
}

void SpecialNetworksTest::unprovisionedEnterpriseIsRefused()
{
    addNetwork(
        {{QStringLiteral("security"), QStringLiteral("ieee8021x")}, {QStringLiteral("provisioned"), false}});
    QCOMPARE(connectService(enterpriseId).text(), invalidArguments);
    QCOMPARE(m_agent->lines(), QStringList());
}

QTEST_GUILESS_MAIN(SpecialNetworksTest)
#include "SpecialNetworksTest.moc"
