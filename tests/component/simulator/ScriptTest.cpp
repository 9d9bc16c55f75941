// The script interface: that it is the documented one, ConnMan's objects raw, and the world around the
// device.

#include "DeviceFixture.h"
#include "EventWait.h"
#include "LogCapture.h"
#include "Suite.h"
#include <QDBusVariant>
#include <QFile>
#include <QTest>
#include <QXmlStreamReader>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString homeId = QStringLiteral("wifi_020000000200_486f6d65_managed_psk");
const QString rawId = QStringLiteral("wifi_raw_managed_psk");
const QString simulatorName = QStringLiteral("com.tactora.Simulator");

QVariantMap network(const char *ssid)
{
    return {{QStringLiteral("ssid"), QString::fromLatin1(ssid)}};
}

/// "method <name>(<types>) -> <types>" and "signal <name>(<types>)" of the script interface, sorted.
QStringList members(const QByteArray &xml)
{
    QStringList result;
    QString in;
    QString out;
    QXmlStreamReader reader(xml);
    bool isInside = false;
    while (!reader.atEnd()) {
        reader.readNext();
        const auto attribute = [&reader](const char *name) {
            return reader.attributes().value(QLatin1String(name)).toString();
        };
        const bool isMember =
            reader.name() == QLatin1String("method") || reader.name() == QLatin1String("signal");
        if (reader.name() == QLatin1String("interface")) {
            isInside = reader.isStartElement() && attribute("name") == simulatorName;
        } else if (isInside && isMember && reader.isStartElement()) {
            in.clear();
            out.clear();
            result.append(reader.name() + QLatin1Char(' ') + attribute("name"));
        } else if (isInside && isMember && reader.isEndElement()) {
            result.last() += QStringLiteral("(%1) -> %2").arg(in, out);
        } else if (isInside && reader.isStartElement() && reader.name() == QLatin1String("arg")) {
            const bool isResult = result.last().startsWith(QLatin1String("method")) &&
                                  attribute("direction") == QLatin1String("out");
            (isResult ? out : in) += attribute("type");
        }
    }
    result.sort();
    return result;
}
} // namespace

class ScriptTest : public DeviceFixture
{
    Q_OBJECT

private slots:
    void interfaceIsTheDocumentedOne();
    void endsWithStatusZero();
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

void ScriptTest::interfaceIsTheDocumentedOne()
{
    QFile documented(QStringLiteral(SCRIPT_INTERFACE));
    QVERIFY(documented.open(QIODevice::ReadOnly));
    const Answer answer =
        m_client->call(simulatorName, QStringLiteral("/simulator"),
                       QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect"));
    QVERIFY2(!answer.isError, qPrintable(answer.error));
    const QStringList expected = members(documented.readAll());
    QVERIFY(expected.size() > 30);
    QCOMPARE(members(answer.arguments.first().toString().toUtf8()), expected);
}

void ScriptTest::endsWithStatusZero()
{
    QVERIFY(m_simulator->quit());
}

void ScriptTest::addsServiceWithConnmansProperties()
{
    QCOMPARE(m_simulator->addService(rawId).path(), QStringLiteral("/net/connman/service/") + rawId);
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged")));
    QCOMPARE(m_simulator->services(), QStringList{rawId});
    QCOMPARE(m_client->property(rawId, QStringLiteral("Strength")), QStringLiteral("byte 0x3c"));
    QCOMPARE(m_client->property(rawId, QStringLiteral("Security")), QStringLiteral("[\"psk\"]"));
    QCOMPARE(m_client->property(rawId, QStringLiteral("Favorite")), QStringLiteral("false"));
    QCOMPARE(m_client->property(rawId, QStringLiteral("IPv4")), QStringLiteral("@a{sv} {}"));
    QCOMPARE(m_client->property(rawId, QStringLiteral("Nameservers")), QStringLiteral("@as []"));
    QCOMPARE(m_client->property(rawId, QStringLiteral("Ethernet")),
             QStringLiteral("{\"Address\": <\"02:00:00:00:02:00\">, \"Interface\": <\"wlan0\">, "
                            "\"MTU\": <uint16 1500>, \"Method\": <\"auto\">}"));
}

void ScriptTest::overridesPropertiesWithTheirTypes()
{
    m_simulator->addService(rawId,
                            {{QStringLiteral("Strength"), 7}, {QStringLiteral("New"), QStringLiteral("x")}});
    QCOMPARE(m_client->property(rawId, QStringLiteral("Strength")), QStringLiteral("7"));
    QCOMPARE(m_client->property(rawId, QStringLiteral("New")), QStringLiteral("\"x\""));
    QCOMPARE(m_simulator->serviceProperties(rawId).value(QStringLiteral("Strength")), QVariant(7));
}

void ScriptTest::refusesWhatIsNotThere_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("reason");
    const QString none = QStringLiteral("none");
    const QVariant variant = QVariant::fromValue(QDBusVariant(1));
    const QString noService = QStringLiteral("No such service: none");
    const QString noTechnology = QStringLiteral("No such technology: none");
    QTest::newRow("removeService") << QStringLiteral("removeService") << QVariantList{none} << noService;
    QTest::newRow("setServiceProperty")
        << QStringLiteral("setServiceProperty") << QVariantList{none, none, variant, false} << noService;
    QTest::newRow("removeServiceProperty")
        << QStringLiteral("removeServiceProperty") << QVariantList{none, none} << noService;
    QTest::newRow("serviceProperties")
        << QStringLiteral("serviceProperties") << QVariantList{none} << noService;
    QTest::newRow("removeTechnology")
        << QStringLiteral("removeTechnology") << QVariantList{none} << noTechnology;
    QTest::newRow("setTechnologyProperty") << QStringLiteral("setTechnologyProperty")
                                           << QVariantList{none, none, variant, false} << noTechnology;
    QTest::newRow("removeTechnologyProperty")
        << QStringLiteral("removeTechnologyProperty") << QVariantList{none, none} << noTechnology;
    QTest::newRow("removeNetwork") << QStringLiteral("removeNetwork") << QVariantList{none}
                                   << QStringLiteral("No such network: none");
    QTest::newRow("setInReach") << QStringLiteral("setInReach") << QVariantList{none, true}
                                << QStringLiteral("No such network: none");
    QTest::newRow("addNetwork") << QStringLiteral("addNetwork") << QVariantList{QVariantMap()}
                                << QStringLiteral("A network needs an \"ssid\"");
    QTest::newRow("setTiming") << QStringLiteral("setTiming") << QVariantList{none, 1}
                               << QStringLiteral("No such timing: none");
    QTest::newRow("setPresent") << QStringLiteral("setPresent") << QVariantList{none, true}
                                << QStringLiteral("No such bus name here: none");
    QTest::newRow("faultFired") << QStringLiteral("faultFired") << QVariantList{7U}
                                << QStringLiteral("No such fault: 7");
    QTest::newRow("injectFault") << QStringLiteral("injectFault")
                                 << QVariantList{none, none, QString(), 1U,
                                                 QVariantMap{{QStringLiteral("kind"), none}}}
                                 << QStringLiteral("No such kind of fault: none");
}

void ScriptTest::refusesWhatIsNotThere()
{
    QFETCH(QString, member);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, reason);
    const Answer answer =
        m_client->call(simulatorName, QStringLiteral("/simulator"), simulatorName, member, arguments);
    QCOMPARE(answer.text(), QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs: ") + reason);
}

void ScriptTest::refusesAServiceThatIsThere()
{
    LogCapture log;
    m_simulator->addService(rawId);
    m_simulator->addService(rawId);
    QCOMPARE(log.takeCriticals(),
             QStringList{QStringLiteral("Simulator: \"addService\" failed: \"The service is there "
                                        "already: wifi_raw_managed_psk\"")});
}

void ScriptTest::addsACrowd()
{
    m_simulator->addServices(7, 3);
    QCOMPARE(m_simulator->services(),
             (QStringList{QStringLiteral("wifi_020000000200_00000007_managed_psk"),
                          QStringLiteral("wifi_020000000200_00000008_managed_psk"),
                          QStringLiteral("wifi_020000000200_00000009_managed_psk")}));
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged")));
    QCOMPARE(m_client->signalLines(QStringLiteral("ServicesChanged")).size(), 1);
}

void ScriptTest::removesService()
{
    m_simulator->addService(rawId);
    m_simulator->removeService(rawId);
    QVERIFY(m_client->waitForSignal(QStringLiteral(
        "ServicesChanged(@a(oa{sv}) [], [objectpath \"/net/connman/service/wifi_raw_managed_psk\"])")));
    QCOMPARE(m_client->service(rawId, QStringLiteral("GetProperties")).text(),
             QStringLiteral(
                 "org.freedesktop.DBus.Error.UnknownObject: Method \"GetProperties\" with signature \"\" "
                 "on interface \"net.connman.Service\" doesn't exist\n"));
}

void ScriptTest::setsServicePropertyWithASignal()
{
    m_simulator->addService(rawId);
    m_simulator->setServiceProperty(rawId, QStringLiteral("Strength"), QVariant::fromValue<uchar>(99));
    QVERIFY(m_client->waitForSignal(
        QStringLiteral("wifi_raw_managed_psk PropertyChanged(\"Strength\", <byte 0x63>)")));
    QCOMPARE(m_client->property(rawId, QStringLiteral("Strength")), QStringLiteral("byte 0x63"));
}

void ScriptTest::setsServicePropertySilently()
{
    m_simulator->addService(rawId);
    m_simulator->setServiceProperty(rawId, QStringLiteral("Name"), QStringLiteral("quiet"), true);
    m_simulator->setServiceProperty(rawId, QStringLiteral("Name2"), QStringLiteral("loud"));
    QVERIFY(m_client->waitForSignal(QStringLiteral("loud")));
    QCOMPARE(m_client->signalLines(QStringLiteral("quiet")), QStringList());
    QCOMPARE(m_client->property(rawId, QStringLiteral("Name")), QStringLiteral("\"quiet\""));
}

void ScriptTest::removesServiceProperty()
{
    m_simulator->addService(rawId);
    m_simulator->removeServiceProperty(rawId, QStringLiteral("State"));
    QCOMPARE(m_client->property(rawId, QStringLiteral("State")), QString());
}

void ScriptTest::addsTechnology()
{
    m_simulator->addTechnology(QStringLiteral("bluetooth"), {{QStringLiteral("Powered"), true}});
    QVERIFY(m_client->waitForSignal(QStringLiteral(
        "TechnologyAdded(objectpath \"/net/connman/technology/bluetooth\", {\"Name\": <\"bluetooth\">, "
        "\"Type\": <\"bluetooth\">, \"Powered\": <true>, \"Connected\": <false>, \"Tethering\": <false>, "
        "\"TetheringFreq\": <2412>})")));
    QVERIFY(
        m_client->manager(QStringLiteral("GetTechnologies")).text().contains(QStringLiteral("bluetooth")));
}

void ScriptTest::changesATechnologyThatIsThere()
{
    m_simulator->addTechnology(QStringLiteral("wifi"), {{QStringLiteral("Powered"), false}});
    QVERIFY(m_client->waitForSignal(
        QStringLiteral("\"Name\": <\"WiFi\">, \"Type\": <\"wifi\">, \"Powered\": <false>")));
}

void ScriptTest::removesTechnology()
{
    m_simulator->removeTechnology(QStringLiteral("wifi"));
    QVERIFY(m_client->waitForSignal(
        QStringLiteral("TechnologyRemoved(objectpath \"/net/connman/technology/wifi\")")));
    QVERIFY(!m_client->manager(QStringLiteral("GetTechnologies")).text().contains(QStringLiteral("wifi")));
}

void ScriptTest::setsTechnologyProperty()
{
    m_simulator->setTechnologyProperty(QStringLiteral("wifi"), QStringLiteral("Powered"),
                                       QStringLiteral("yes"));
    QVERIFY(m_client->waitForSignal(QStringLiteral("wifi PropertyChanged(\"Powered\", <\"yes\">)")));
}

void ScriptTest::setsTechnologyPropertySilently()
{
    m_simulator->setTechnologyProperty(QStringLiteral("wifi"), QStringLiteral("Powered"), 1, true);
    QVERIFY(m_client->technology(QStringLiteral("wifi"), QStringLiteral("GetProperties"))
                .text()
                .contains(QStringLiteral("\"Powered\": <1>")));
    QCOMPARE(m_client->signalLines(QStringLiteral("Powered")), QStringList());
}

void ScriptTest::removesTechnologyProperty()
{
    m_simulator->removeTechnologyProperty(QStringLiteral("wifi"), QStringLiteral("Powered"));
    QVERIFY(!m_client->technology(QStringLiteral("wifi"), QStringLiteral("GetProperties"))
                 .text()
                 .contains(QStringLiteral("Powered")));
}

void ScriptTest::emitsAnySignal()
{
    m_simulator->emitSignal(QStringLiteral("/net/connman/service/gone"),
                            QStringLiteral("net.connman.Service"), QStringLiteral("PropertyChanged"),
                            {QStringLiteral("State"), 5, QStringList()});
    QVERIFY(m_client->waitForSignal(QStringLiteral("gone PropertyChanged(\"State\", 5, @as [])")));
}

void ScriptTest::networkIsThereAtOnce()
{
    QCOMPARE(m_simulator->addNetwork(network("Home")), homeId);
    QVERIFY(m_client->waitForSignal(homeId));
    QCOMPARE(m_simulator->services(), QStringList{homeId});
    QCOMPARE(m_client->property(homeId, QStringLiteral("Name")), QStringLiteral("\"Home\""));
}

void ScriptTest::networkWaitsForAScan()
{
    QVariantMap options = network("Home");
    options[QStringLiteral("atOnce")] = false;
    QCOMPARE(m_simulator->addNetwork(options), homeId);
    QCOMPARE(m_simulator->services(), QStringList());
    QVERIFY(!m_client->technology(QStringLiteral("wifi"), QStringLiteral("Scan")).isError);
    QCOMPARE(m_simulator->services(), QStringList{homeId});
}

void ScriptTest::networkReplacesItsNamesake()
{
    m_simulator->addNetwork(network("Home"));
    m_simulator->addNetwork(network("Home"));
    QCOMPARE(m_simulator->services(), QStringList{homeId});
}

void ScriptTest::removesNetwork()
{
    m_simulator->addNetwork(network("Home"));
    m_simulator->removeNetwork(QStringLiteral("Home"));
    QCOMPARE(m_simulator->services(), QStringList());
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged(@a(oa{sv}) [], [objectpath")));
}

static const Suite<ScriptTest> suite;
#include "ScriptTest.moc"
