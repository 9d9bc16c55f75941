// Joining networks with WPS, hidden ones and enterprise ones: the agent's other dialogues.

#include "NetworkFixture.h"
#include "Suite.h"
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString enterpriseId = QStringLiteral("wifi_020000000200_486f6d65_managed_ieee8021x");
const QString hiddenId = QStringLiteral("wifi_020000000200_hidden_managed_psk");
const QString pin = QStringLiteral("12345670");
const QString provisioningFile = QStringLiteral("office.config");

bool provision(const QTemporaryDir &directory)
{
    QFile file(directory.filePath(provisioningFile));
    return file.open(QIODevice::WriteOnly) && file.write("[service_x]\nType=wifi\nName=Home\nEAP=peap") > 0;
}
} // namespace

class SpecialNetworksTest : public NetworkFixture
{
    Q_OBJECT

private slots:
    void wpsOffersBothWays();
    void wpsByPinConnects();
    void wpsByButtonConnects();
    void unusablePinFails();
    void wrongPinFailsToConnect();
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
    void provisioningFileMakesTheNetworkKnown();
    void provisionedNetworkStillAsks();
    void removedProvisioningFileForgetsTheNetwork();
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

void SpecialNetworksTest::wrongPinFailsToConnect()
{
    addNetwork({{QStringLiteral("security"), QStringLiteral("wps")}, {QStringLiteral("pin"), pin}});
    m_agent->planInput(with(QStringLiteral("WPS"), QStringLiteral("00000000")));
    QCOMPARE(connectService(pskId).text(), failed);
    QVERIFY(m_agent->waitForLine(QStringLiteral("\"connect-failed\"")));
    QCOMPARE(m_client->states(pskId).join(QLatin1Char(' ')), QStringLiteral("association failure idle"));
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
    QVERIFY(m_agent->waitForLine(QStringLiteral("\"connect-failed\"")));
}

void SpecialNetworksTest::unprovisionedEnterpriseIsRefused()
{
    addNetwork(
        {{QStringLiteral("security"), QStringLiteral("ieee8021x")}, {QStringLiteral("provisioned"), false}});
    QCOMPARE(connectService(enterpriseId).text(), invalidArguments);
    QCOMPARE(m_agent->lines(), QStringList());
}

void SpecialNetworksTest::provisioningFileMakesTheNetworkKnown()
{
    const QTemporaryDir directory;
    m_simulator->setConnmanDirectory(directory.path());
    addNetwork(with(QStringLiteral("security"), QStringLiteral("ieee8021x")));
    QCOMPARE(connectService(enterpriseId).text(), invalidArguments);

    QVERIFY(provision(directory));

    QVERIFY(m_client->waitForSignal(QStringLiteral("PropertyChanged(\"Immutable\", <true>)")));
    QCOMPARE(m_client->property(enterpriseId, QStringLiteral("Favorite")), QStringLiteral("true"));
    QCOMPARE(m_client->property(enterpriseId, QStringLiteral("AutoConnect")), QStringLiteral("true"));
}

void SpecialNetworksTest::provisionedNetworkStillAsks()
{
    const QTemporaryDir directory;
    m_simulator->setConnmanDirectory(directory.path());
    addNetwork(with(QStringLiteral("security"), QStringLiteral("ieee8021x")));
    QVERIFY(provision(directory));
    m_agent->planInput({{QStringLiteral("Identity"), QStringLiteral("me")}, {passphrase, rightPassphrase}});

    QCOMPARE(connectService(enterpriseId).text(), QString());

    QCOMPARE(m_agent->lines().filter(QStringLiteral("RequestInput")).size(), 1);
}

void SpecialNetworksTest::removedProvisioningFileForgetsTheNetwork()
{
    const QTemporaryDir directory;
    m_simulator->setConnmanDirectory(directory.path());
    addNetwork(with(QStringLiteral("security"), QStringLiteral("ieee8021x")));
    QVERIFY(provision(directory));
    m_agent->planInput({{QStringLiteral("Identity"), QStringLiteral("me")}, {passphrase, rightPassphrase}});
    QCOMPARE(connectService(enterpriseId).text(), QString());
    QCOMPARE(m_simulator->storedPassphrase(enterpriseId), rightPassphrase);

    QVERIFY(QFile::remove(directory.filePath(provisioningFile)));

    QVERIFY(m_client->waitForSignal(QStringLiteral("PropertyChanged(\"Favorite\", <false>)")));
    QCOMPARE(m_client->property(enterpriseId, QStringLiteral("Immutable")), QStringLiteral("false"));
    QCOMPARE(m_client->property(enterpriseId, QStringLiteral("State")), QStringLiteral("\"idle\""));
    QCOMPARE(m_simulator->storedPassphrase(enterpriseId), QString());
}

static const Suite<SpecialNetworksTest> suite;
#include "SpecialNetworksTest.moc"
