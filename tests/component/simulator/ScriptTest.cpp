// The script interface: ConnMan's objects raw, and the world around the device.

#include "DeviceFixture.h"
#include "EventWait.h"
#include "LogCapture.h"
#include "Suite.h"
#include "Text.h"
#include <QDBusVariant>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString simulatorName = "com.tactora.Simulator"_s;

QVariantMap network(const char *ssid)
{
    return {{"ssid"_s, QString::fromLatin1(ssid)}};
}
} // namespace

class ScriptTest : public DeviceFixture
{
    Q_OBJECT

private slots:
    void addsServiceWithConnmansProperties();
    void overridesPropertiesWithTheirTypes();
    void refusesWhatIsNotThere_data();
    void refusesWhatIsNotThere();
    void refusesAServiceThatIsThere();
    void addsACrowd();
    void removesService();
    void setsServicePropertyWithASignal();
    void setsServicePropertySilently();
    void removesServiceProperty();
    void addsTechnology();
    void changesATechnologyThatIsThere();
    void removesTechnology();
    void setsTechnologyProperty();
    void setsTechnologyPropertySilently();
    void removesTechnologyProperty();
    void emitsAnySignal();
    void networkIsThereAtOnce();
    void networkWaitsForAScan();
    void networkReplacesItsNamesake();
    void removesNetwork();
};

void ScriptTest::addsServiceWithConnmansProperties()
{
    QCOMPARE(m_simulator->addService(rawId).path(), "/net/connman/service/"_s + rawId);
    QVERIFY(m_client->waitForSignal("ServicesChanged"_s));
    QCOMPARE(m_simulator->services(), QStringList{rawId});
    QCOMPARE(m_client->property(rawId, "Strength"_s), "byte 0x3c"_s);
    QCOMPARE(m_client->property(rawId, "Security"_s), "[\"psk\"]"_s);
    QCOMPARE(m_client->property(rawId, "Favorite"_s), "false"_s);
    QCOMPARE(m_client->property(rawId, "IPv4"_s), "@a{sv} {}"_s);
    QCOMPARE(m_client->property(rawId, "Nameservers"_s), "@as []"_s);
    QCOMPARE(m_client->property(rawId, "Ethernet"_s),
             "{\"Address\": <\"02:00:00:00:02:00\">, \"Interface\": <\"wlan0\">, "
             "\"MTU\": <uint16 1500>, \"Method\": <\"auto\">}"_s);
}

void ScriptTest::overridesPropertiesWithTheirTypes()
{
    m_simulator->addService(rawId, {{"Strength"_s, 7}, {"New"_s, "x"_s}});
    QCOMPARE(m_client->property(rawId, "Strength"_s), "7"_s);
    QCOMPARE(m_client->property(rawId, "New"_s), "\"x\""_s);
    QCOMPARE(m_simulator->serviceProperties(rawId).value("Strength"_s), QVariant(7));
}

void ScriptTest::refusesWhatIsNotThere_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("reason");
    const QString none = "none"_s;
    const QVariant variant = QVariant::fromValue(QDBusVariant(1));
    const QString noService = "No such service: none"_s;
    const QString noTechnology = "No such technology: none"_s;
    QTest::newRow("removeService") << "removeService"_s << QVariantList{none} << noService;
    QTest::newRow("setServiceProperty")
        << "setServiceProperty"_s << QVariantList{none, none, variant, false} << noService;
    QTest::newRow("removeServiceProperty")
        << "removeServiceProperty"_s << QVariantList{none, none} << noService;
    QTest::newRow("serviceProperties") << "serviceProperties"_s << QVariantList{none} << noService;
    QTest::newRow("removeTechnology") << "removeTechnology"_s << QVariantList{none} << noTechnology;
    QTest::newRow("setTechnologyProperty")
        << "setTechnologyProperty"_s << QVariantList{none, none, variant, false} << noTechnology;
    QTest::newRow("removeTechnologyProperty")
        << "removeTechnologyProperty"_s << QVariantList{none, none} << noTechnology;
    QTest::newRow("removeNetwork") << "removeNetwork"_s << QVariantList{none} << "No such network: none"_s;
    QTest::newRow("setInReach") << "setInReach"_s << QVariantList{none, true} << "No such network: none"_s;
    QTest::newRow("addNetwork") << "addNetwork"_s << QVariantList{QVariantMap()}
                                << "A network needs an \"ssid\""_s;
    QTest::newRow("setTiming") << "setTiming"_s << QVariantList{none, 1} << "No such timing: none"_s;
    QTest::newRow("setPresent") << "setPresent"_s << QVariantList{none, true}
                                << "No such bus name here: none"_s;
    QTest::newRow("faultFired") << "faultFired"_s << QVariantList{7U} << "No such fault: 7"_s;
    QTest::newRow("injectFault") << "injectFault"_s
                                 << QVariantList{none, none, QString(), 1U, QVariantMap{{"kind"_s, none}}}
                                 << "No such kind of fault: none"_s;
}

void ScriptTest::refusesWhatIsNotThere()
{
    QFETCH(QString, member);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, reason);
    const Answer answer = m_client->call(simulatorName, "/simulator"_s, simulatorName, member, arguments);
    QCOMPARE(answer.text(), "org.freedesktop.DBus.Error.InvalidArgs: "_s + reason);
}

void ScriptTest::refusesAServiceThatIsThere()
{
    LogCapture log;
    m_simulator->addService(rawId);
    m_simulator->addService(rawId);
    QCOMPARE(log.takeCriticals(), QStringList{"Simulator: \"The service is there "
                                              "already: wifi_raw_managed_psk\""_s});
}

void ScriptTest::addsACrowd()
{
    m_simulator->addServices(7, 3);
    QCOMPARE(m_simulator->services(), (QStringList{"wifi_020000000200_00000007_managed_psk"_s,
                                                   "wifi_020000000200_00000008_managed_psk"_s,
                                                   "wifi_020000000200_00000009_managed_psk"_s}));
    QVERIFY(m_client->waitForSignal("ServicesChanged"_s));
    QCOMPARE(m_client->signalLines("ServicesChanged"_s).size(), 1);
}

void ScriptTest::removesService()
{
    m_simulator->addService(rawId);
    m_simulator->removeService(rawId);
    QVERIFY(m_client->waitForSignal(
        "ServicesChanged(@a(oa{sv}) [], [objectpath \"/net/connman/service/wifi_raw_managed_psk\"])"_s));
    QCOMPARE(m_client->service(rawId, "GetProperties"_s).text(),
             "org.freedesktop.DBus.Error.UnknownObject: Method \"GetProperties\" with signature \"\" "
             "on interface \"net.connman.Service\" doesn't exist\n"_s);
}

void ScriptTest::setsServicePropertyWithASignal()
{
    m_simulator->addService(rawId);
    m_simulator->setServiceProperty(rawId, "Strength"_s, QVariant::fromValue<uchar>(99));
    QVERIFY(m_client->waitForSignal("wifi_raw_managed_psk PropertyChanged(\"Strength\", <byte 0x63>)"_s));
    QCOMPARE(m_client->property(rawId, "Strength"_s), "byte 0x63"_s);
}

void ScriptTest::setsServicePropertySilently()
{
    m_simulator->addService(rawId);
    m_simulator->setServiceProperty(rawId, "Name"_s, "quiet"_s, true);
    m_simulator->setServiceProperty(rawId, "Name2"_s, "loud"_s);
    QVERIFY(m_client->waitForSignal("loud"_s));
    QCOMPARE(m_client->signalLines("quiet"_s), QStringList());
    QCOMPARE(m_client->property(rawId, "Name"_s), "\"quiet\""_s);
}

void ScriptTest::removesServiceProperty()
{
    m_simulator->addService(rawId);
    m_simulator->removeServiceProperty(rawId, "State"_s);
    QCOMPARE(m_client->property(rawId, "State"_s), QString());
}

void ScriptTest::addsTechnology()
{
    m_simulator->addTechnology("bluetooth"_s, {{"Powered"_s, true}});
    QVERIFY(m_client->waitForSignal(
        "TechnologyAdded(objectpath \"/net/connman/technology/bluetooth\", {\"Name\": <\"bluetooth\">, "
        "\"Type\": <\"bluetooth\">, \"Powered\": <true>, \"Connected\": <false>, \"Tethering\": <false>, "
        "\"TetheringFreq\": <0>})"_s));
    QVERIFY(m_client->manager("GetTechnologies"_s).text().contains("bluetooth"_s));
}

void ScriptTest::changesATechnologyThatIsThere()
{
    m_simulator->addTechnology("wifi"_s, {{"Powered"_s, false}});
    QVERIFY(m_client->waitForSignal("\"Name\": <\"WiFi\">, \"Type\": <\"wifi\">, \"Powered\": <false>"_s));
}

void ScriptTest::removesTechnology()
{
    m_simulator->removeTechnology("wifi"_s);
    QVERIFY(m_client->waitForSignal("TechnologyRemoved(objectpath \"/net/connman/technology/wifi\")"_s));
    QVERIFY(!m_client->manager("GetTechnologies"_s).text().contains("wifi"_s));
}

void ScriptTest::setsTechnologyProperty()
{
    m_simulator->setTechnologyProperty("wifi"_s, "Powered"_s, "yes"_s);
    QVERIFY(m_client->waitForSignal("wifi PropertyChanged(\"Powered\", <\"yes\">)"_s));
}

void ScriptTest::setsTechnologyPropertySilently()
{
    m_simulator->setTechnologyProperty("wifi"_s, "Powered"_s, 1, true);
    QVERIFY(m_client->technology("wifi"_s, "GetProperties"_s).text().contains("\"Powered\": <1>"_s));
    QCOMPARE(m_client->signalLines("Powered"_s), QStringList());
}

void ScriptTest::removesTechnologyProperty()
{
    m_simulator->removeTechnologyProperty("wifi"_s, "Powered"_s);
    QVERIFY(!m_client->technology("wifi"_s, "GetProperties"_s).text().contains("Powered"_s));
}

void ScriptTest::emitsAnySignal()
{
    m_simulator->emitSignal("/net/connman/service/gone"_s, "net.connman.Service"_s, "PropertyChanged"_s,
                            {"State"_s, 5, QStringList()});
    QVERIFY(m_client->waitForSignal("gone PropertyChanged(\"State\", 5, @as [])"_s));
}

void ScriptTest::networkIsThereAtOnce()
{
    QCOMPARE(m_simulator->addNetwork(network("Home")), pskId);
    QVERIFY(m_client->waitForSignal(pskId));
    QCOMPARE(m_simulator->services(), QStringList{pskId});
    QCOMPARE(m_client->property(pskId, "Name"_s), "\"Home\""_s);
}

void ScriptTest::networkWaitsForAScan()
{
    QVariantMap options = network("Home");
    options["atOnce"_s] = false;
    QCOMPARE(m_simulator->addNetwork(options), pskId);
    QCOMPARE(m_simulator->services(), QStringList());
    QVERIFY(!m_client->technology("wifi"_s, "Scan"_s).isError);
    QCOMPARE(m_simulator->services(), QStringList{pskId});
}

void ScriptTest::networkReplacesItsNamesake()
{
    m_simulator->addNetwork(network("Home"));
    m_simulator->addNetwork(network("Home"));
    QCOMPARE(m_simulator->services(), QStringList{pskId});
}

void ScriptTest::removesNetwork()
{
    m_simulator->addNetwork(network("Home"));
    m_simulator->removeNetwork("Home"_s);
    QCOMPARE(m_simulator->services(), QStringList());
    QVERIFY(m_client->waitForSignal("ServicesChanged(@a(oa{sv}) [], [objectpath"_s));
}

static const Suite<ScriptTest> scriptTest;
#include "ScriptTest.moc"
