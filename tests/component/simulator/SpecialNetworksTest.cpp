// Joining networks with WPS, hidden ones and enterprise ones: the agent's other dialogues.

#include "NetworkFixture.h"
#include "Suite.h"
#include "Text.h"
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString enterpriseId = "wifi_020000000200_486f6d65_managed_ieee8021x"_s;
const QString pin = "12345670"_s;
const QString provisioningFile = "office.config"_s;

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
    addNetwork(with("security"_s, "wps"_s));
    m_agent->planInput(with(passphrase, rightPassphrase));
    QCOMPARE(connectService(pskId).text(), QString());
    QCOMPARE(
        m_agent->lines(),
        QStringList{request(pskId, "\"Passphrase\": <{\"Type\": <\"psk\">, \"Requirement\": <\"mandatory\">, "
                                   "\"Alternates\": <[\"WPS\"]>}>, "
                                   "\"WPS\": <{\"Type\": <\"wpspin\">, \"Requirement\": <\"alternate\">}>")});
    QCOMPARE(m_client->property(pskId, "Security"_s), "[\"psk\", \"wps\"]"_s);
}

void SpecialNetworksTest::wpsByPinConnects()
{
    addNetwork({{"security"_s, "wps"_s}, {"pin"_s, pin}});
    m_agent->planInput(with("WPS"_s, pin));
    QCOMPARE(connectService(pskId).text(), QString());
}

void SpecialNetworksTest::wpsByButtonConnects()
{
    addNetwork(with("security"_s, "wps"_s));
    m_agent->planInput(with("WPS"_s, QString()));
    QCOMPARE(connectService(pskId).text(), QString());
}

void SpecialNetworksTest::unusablePinFails()
{
    addNetwork({{"security"_s, "wps"_s}, {"pin"_s, pin}});
    m_agent->planInput(with("WPS"_s, "123"_s));
    QCOMPARE(connectService(pskId).text(), failed);
    QVERIFY(m_agent->waitForLine("invalid-key"_s));
}

void SpecialNetworksTest::wrongPinFailsToConnect()
{
    addNetwork({{"security"_s, "wps"_s}, {"pin"_s, pin}});
    m_agent->planInput(with("WPS"_s, "00000000"_s));
    QCOMPARE(connectService(pskId).text(), failed);
    QVERIFY(m_agent->waitForLine("\"connect-failed\""_s));
    QCOMPARE(m_client->states(pskId).join(QLatin1Char(' ')), "association failure idle"_s);
}

void SpecialNetworksTest::hiddenNetworkHasNoName()
{
    QCOMPARE(addNetwork(with("hidden"_s, true)), hiddenId);
    QCOMPARE(m_client->property(hiddenId, "Name"_s), QString());
    QCOMPARE(m_client->property(hiddenId, "Security"_s), "[\"psk\"]"_s);
}

void SpecialNetworksTest::hiddenNetworkAppearsUnderItsName()
{
    addNetwork(with("hidden"_s, true));
    m_agent->planInput({{"Name"_s, ssid}, {passphrase, rightPassphrase}});
    QCOMPARE(connectService(hiddenId).text(), QString());
    QCOMPARE(m_agent->lines(),
             QStringList{request(
                 hiddenId, "\"Name\": <{\"Type\": <\"string\">, \"Requirement\": <\"mandatory\">, "
                           "\"Alternates\": <[\"SSID\"]>}>, "
                           "\"SSID\": <{\"Type\": <\"ssid\">, \"Requirement\": <\"alternate\">}>, "
                           "\"Passphrase\": <{\"Type\": <\"psk\">, \"Requirement\": <\"mandatory\">}>")});
    QVERIFY(m_client->waitForSignal("service/%1\", {\"Type\""_s.arg(pskId)));
    QCOMPARE(m_client->property(pskId, "Favorite"_s), "true"_s);
    QCOMPARE(m_client->property(pskId, "Name"_s), "\"Home\""_s);
    QCOMPARE(m_client->property(hiddenId, "State"_s), "\"idle\""_s);
}

void SpecialNetworksTest::hiddenNetworkByBytesOfItsName()
{
    addNetwork(with("hidden"_s, true));
    m_agent->planInput({{"SSID"_s, ssid.toUtf8()}, {passphrase, rightPassphrase}});
    QCOMPARE(connectService(hiddenId).text(), QString());
    QCOMPARE(m_client->property(pskId, "Favorite"_s), "true"_s);
}

void SpecialNetworksTest::hiddenNetworkThatIsNotThereFails()
{
    addNetwork(with("hidden"_s, true));
    m_agent->planInput({{"Name"_s, "Elsewhere"_s}, {passphrase, rightPassphrase}});
    QCOMPARE(connectService(hiddenId).text(), failed);
}

void SpecialNetworksTest::hiddenNetworkWithoutANameIsRefused()
{
    addNetwork(with("hidden"_s, true));
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
    addNetwork(with("hidden"_s, true));
    m_agent->planInputError(refusal);
    QCOMPARE(connectService(hiddenId).text(), error);
}

void SpecialNetworksTest::hiddenNetworkWithAWrongPassphraseFails()
{
    addNetwork(with("hidden"_s, true));
    m_agent->planInput({{"Name"_s, ssid}, {passphrase, "wrong passphrase"_s}});
    QCOMPARE(connectService(hiddenId).text(), failed);
    QVERIFY(m_agent->waitForLine("ReportError(objectpath \"/net/connman/service/%1\""_s.arg(pskId)));
}

void SpecialNetworksTest::enterpriseAsksForIdentityAndPassphrase()
{
    addNetwork({{"security"_s, "ieee8021x"_s}, {"identity"_s, "me"_s}});
    m_agent->planInput({{"Identity"_s, "me"_s}, {passphrase, rightPassphrase}});
    QCOMPARE(connectService(enterpriseId).text(), QString());
    QCOMPARE(m_agent->lines(),
             QStringList{request(
                 enterpriseId,
                 "\"Identity\": <{\"Type\": <\"string\">, \"Requirement\": <\"mandatory\">}>, "
                 "\"Passphrase\": <{\"Type\": <\"passphrase\">, \"Requirement\": <\"mandatory\">}>")});
}

void SpecialNetworksTest::wrongIdentityFails()
{
    addNetwork({{"security"_s, "ieee8021x"_s}, {"identity"_s, "me"_s}});
    m_agent->planInput({{"Identity"_s, "you"_s}, {passphrase, rightPassphrase}});
    QCOMPARE(connectService(enterpriseId).text(), failed);
    QVERIFY(m_agent->waitForLine("\"connect-failed\""_s));
}

void SpecialNetworksTest::unprovisionedEnterpriseIsRefused()
{
    addNetwork({{"security"_s, "ieee8021x"_s}, {"provisioned"_s, false}});
    QCOMPARE(connectService(enterpriseId).text(), invalidArguments);
    QCOMPARE(m_agent->lines(), QStringList());
}

void SpecialNetworksTest::provisioningFileMakesTheNetworkKnown()
{
    const QTemporaryDir directory;
    m_simulator->setConnmanDirectory(directory.path());
    addNetwork(with("security"_s, "ieee8021x"_s));
    QCOMPARE(connectService(enterpriseId).text(), invalidArguments);

    QVERIFY(provision(directory));

    QVERIFY(m_client->waitForSignal("PropertyChanged(\"Immutable\", <true>)"_s));
    QCOMPARE(m_client->property(enterpriseId, "Favorite"_s), "true"_s);
    QCOMPARE(m_client->property(enterpriseId, "AutoConnect"_s), "true"_s);
}

void SpecialNetworksTest::provisionedNetworkStillAsks()
{
    const QTemporaryDir directory;
    m_simulator->setConnmanDirectory(directory.path());
    addNetwork(with("security"_s, "ieee8021x"_s));
    QVERIFY(provision(directory));
    m_agent->planInput({{"Identity"_s, "me"_s}, {passphrase, rightPassphrase}});

    QCOMPARE(connectService(enterpriseId).text(), QString());

    QCOMPARE(m_agent->lines().filter("RequestInput"_s).size(), 1);
}

void SpecialNetworksTest::removedProvisioningFileForgetsTheNetwork()
{
    const QTemporaryDir directory;
    m_simulator->setConnmanDirectory(directory.path());
    addNetwork(with("security"_s, "ieee8021x"_s));
    QVERIFY(provision(directory));
    m_agent->planInput({{"Identity"_s, "me"_s}, {passphrase, rightPassphrase}});
    QCOMPARE(connectService(enterpriseId).text(), QString());
    QCOMPARE(m_simulator->storedPassphrase(enterpriseId), rightPassphrase);

    QVERIFY(QFile::remove(directory.filePath(provisioningFile)));

    QVERIFY(m_client->waitForSignal("PropertyChanged(\"Favorite\", <false>)"_s));
    QCOMPARE(m_client->property(enterpriseId, "Immutable"_s), "false"_s);
    QCOMPARE(m_client->property(enterpriseId, "State"_s), "\"idle\""_s);
    QCOMPARE(m_simulator->storedPassphrase(enterpriseId), QString());
}

static const Suite<SpecialNetworksTest> specialNetworksTest;
#include "SpecialNetworksTest.moc"
