// ConnMan's list of services and what it announces of it; scanning; power; the cable.

#include "BusClient.h"
#include "ConnmanWire.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"
#include <QDBusVariant>
#include <QtTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString wifi = QStringLiteral("wifi");
const QString ethernet = QStringLiteral("ethernet");
const QString cableId = QStringLiteral("ethernet_020000000100_cable");
const QString homeId = QStringLiteral("wifi_020000000200_486f6d65_managed_none");
const QString servicesChanged = QStringLiteral("ServicesChanged");
const QString powered = QStringLiteral("Powered");

QString path(const char *identifier)
{
    return QStringLiteral("\"/net/connman/service/%1\"").arg(QLatin1String(identifier));
}
} // namespace

class ListTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { simulator::registerWireTypes(); }
    void init();
    void cleanup();

    void onlyNewServicesAreAnnouncedWithProperties();
    void removedServicesAreAnnouncedByPath();
    void newServiceTellsNothingBeforeItsAnnouncement();
    void listIsInConnmansOrder();
    void fiveThousandServicesAreCheap();

    void scanIsAnsweredWhenItIsComplete();
    void foundServicesAreAnnouncedAfterTheScansReply();
    void secondScanSharesTheFirstOnesAnswer();
    void scanOfEthernetIsNotSupported();
    void scanWithoutPowerHasNoCarrier();

    void poweringWifiOffTakesItsServicesAway();
    void poweringWifiOnScansAndConnectsFavourites();
    void powerThatIsSoAlreadyIsAnError_data();
    void powerThatIsSoAlreadyIsAnError();
    void powerNeedsABoolean();
    void unknownTechnologyPropertyIsRefused();

    void pluggedCableGetsOnline();
    void pluggedCableGetsOnlineBesideStrangers();
    void unpluggedCableGoes();
    void cableWithoutDhcpFallsBackToALinkLocalAddress();
    void ethernetConnectIsAnsweredBeforeItsAddressIsThere();
    void onlyTheDefaultConnectionGetsOnline();

    void managerTellsItsState();
    void offlineModeIsToldAndChecked();
    void oneAgentForEachClient();
    void oneCounterForEachPath();
    void clockTellsTheTime();
    void unknownPathsAndMethodsAreRefusedAsByLibdbus_data();
    void unknownPathsAndMethodsAreRefusedAsByLibdbus();
    void favouritesCanBeMoved();

private:
    Answer setPowered(const QString &technology, const QVariant &value) const;

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<BusClient> m_client;
    std::unique_ptr<SimulatorClient> m_simulator;
};

void ListTest::init()
{
    m_bus = std::make_unique<PrivateBus>();
    m_client = std::make_unique<BusClient>(m_bus->address());
    m_simulator = std::make_unique<SimulatorClient>(m_bus->address());
    QVERIFY(m_simulator->isReady());
}

void ListTest::cleanup()
{
    m_simulator.reset();
    m_client.reset();
    m_bus.reset();
}

Answer ListTest::setPowered(const QString &technology, const QVariant &value) const
{
    return m_client->technology(technology, QStringLiteral("SetProperty"),
                                {powered, QVariant::fromValue(QDBusVariant(value))});
}

void ListTest::onlyNewServicesAreAnnouncedWithProperties()
{
    m_simulator->addService(QStringLiteral("wifi_a_managed_psk"));
    QVERIFY(m_client->waitForSignal(servicesChanged));
    m_client->clear();
    m_simulator->addService(QStringLiteral("wifi_b_managed_psk"));
    QVERIFY(m_client->waitForSignal(servicesChanged));
    const QString line = m_client->signalLines(servicesChanged).first();
    QVERIFY2(
        line.contains(QStringLiteral("(objectpath %1, @a{sv} {}), (%2, {\"Type\": <\"wifi\">, \"Security\": "
                                     "<[\"psk\"]>, \"State\": <\"idle\">, \"Strength\": <byte 0x3c>, "
                                     "\"Favorite\": <false>")
                          .arg(path("wifi_a_managed_psk"), path("wifi_b_managed_psk"))),
        qPrintable(line));
    QVERIFY2(line.endsWith(QStringLiteral("], @ao [])")), qPrintable(line));
}

void ListTest::removedServicesAreAnnouncedByPath()
{
    m_simulator->addService(QStringLiteral("wifi_a_managed_psk"));
    m_simulator->addService(QStringLiteral("wifi_b_managed_psk"));
    m_simulator->removeService(QStringLiteral("wifi_a_managed_psk"));
    QVERIFY(m_client->waitForSignal(
        QStringLiteral("ServicesChanged([(objectpath %1, @a{sv} {})], [objectpath %2])")
            .arg(path("wifi_b_managed_psk"), path("wifi_a_managed_psk"))));
}

void ListTest::newServiceTellsNothingBeforeItsAnnouncement()
{
    m_simulator->setTiming(QStringLiteral("configuration"), 50);
    m_simulator->setTiming(QStringLiteral("announce"), 200);
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForSignal(servicesChanged));
    // By then the service is connected: nobody was told how it came to that.
    QVERIFY(
        m_client->signalLines(servicesChanged).first().contains(QStringLiteral("\"State\": <\"online\">")));
    QCOMPARE(m_client->states(cableId), QStringList());
}

void ListTest::listIsInConnmansOrder()
{
    const auto add = [this](const char *name, const char *state, bool favorite, uchar strength) {
        m_simulator->addService(QStringLiteral("wifi_%1_managed_psk").arg(QLatin1String(name)),
                                {{QStringLiteral("State"), QString::fromLatin1(state)},
                                 {QStringLiteral("Favorite"), favorite},
                                 {QStringLiteral("Strength"), QVariant::fromValue(strength)}});
    };
    m_simulator->setTiming(QStringLiteral("autoConnect"), -1);
    add("weak", "idle", false, 10);
    add("strong", "idle", false, 90);
    add("known", "idle", true, 5);
    add("ready", "ready", true, 20);
    add("online", "online", true, 20);
    QVERIFY(!m_client->technology(wifi, QStringLiteral("Scan")).isError);
    QStringList names;
    for (const QString &identifier : m_simulator->services()) {
        names.append(identifier.section(QLatin1Char('_'), 1, 1));
    }
    QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("online ready known strong weak"));
}

void ListTest::fiveThousandServicesAreCheap()
{
    m_client->stopListening(); // writing down the announcement takes longer than making it
    QElapsedTimer elapsed;
    elapsed.start();
    m_simulator->addServices(0, 5000);
    const Answer services = m_client->manager(QStringLiteral("GetServices"));
    const Answer properties = m_client->service(QStringLiteral("wifi_020000000200_00004999_managed_psk"),
                                                QStringLiteral("GetProperties"));
    qInfo("5000 services added, listed and one read in %lld ms", elapsed.elapsed());
    QVERIFY(elapsed.elapsed() < 20000);
    QVERIFY(!properties.isError);
    QCOMPARE(qdbus_cast<simulator::ObjectRecordList>(services.arguments.first()).size(), 5000);
}

void ListTest::scanIsAnsweredWhenItIsComplete()
{
    m_simulator->setTiming(QStringLiteral("scan"), 200);
    QElapsedTimer elapsed;
    elapsed.start();
    QCOMPARE(m_client->technology(wifi, QStringLiteral("Scan")).text(), QString());
    QVERIFY2(elapsed.elapsed() >= 190, qPrintable(QString::number(elapsed.elapsed())));
}

void ListTest::foundServicesAreAnnouncedAfterTheScansReply()
{
    m_simulator->setTiming(QStringLiteral("announce"), 200);
    m_simulator->addNetwork(
        {{QStringLiteral("ssid"), QStringLiteral("Home")}, {QStringLiteral("atOnce"), false}});
    m_client->clear();
    QVERIFY(!m_client->technology(wifi, QStringLiteral("Scan")).isError);
    QCOMPARE(m_client->signalLines(servicesChanged), QStringList());
    QVERIFY(m_client->waitForSignal(servicesChanged));
}

void ListTest::secondScanSharesTheFirstOnesAnswer()
{
    m_simulator->setTiming(QStringLiteral("scan"), 300);
    const QDBusMessage scan = QDBusMessage::createMethodCall(
        QStringLiteral("net.connman"), QStringLiteral("/net/connman/technology/wifi"),
        QStringLiteral("net.connman.Technology"), QStringLiteral("Scan"));
    QElapsedTimer elapsed;
    elapsed.start();
    PendingAnswer first(m_client->connection(), scan);
    PendingAnswer second(m_client->connection(), scan);
    QVERIFY(!first.wait().isError);
    QVERIFY(!second.wait().isError);
    QVERIFY2(elapsed.elapsed() < 590, qPrintable(QString::number(elapsed.elapsed())));
}

void ListTest::scanOfEthernetIsNotSupported()
{
    QCOMPARE(m_client->technology(ethernet, QStringLiteral("Scan")).text(),
             QStringLiteral("net.connman.Error.NotSupported: Not supported"));
}

void ListTest::scanWithoutPowerHasNoCarrier()
{
    m_simulator->setTechnologyProperty(wifi, powered, false);
    QCOMPARE(m_client->technology(wifi, QStringLiteral("Scan")).text(),
             QStringLiteral("net.connman.Error.NoCarrier: No carrier"));
}

void ListTest::poweringWifiOffTakesItsServicesAway()
{
    m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")},
                             {QStringLiteral("security"), QStringLiteral("none")}});
    QVERIFY(!m_client->service(homeId, QStringLiteral("Connect")).isError);
    m_client->clear();
    QCOMPARE(setPowered(wifi, false).text(), QString());
    QVERIFY(m_client->waitForSignal(QStringLiteral("wifi PropertyChanged(\"Powered\", <false>)")));
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged(@a(oa{sv}) [], [objectpath")));
    QCOMPARE(m_simulator->services(), QStringList());
    QCOMPARE(m_client->signalLines(QStringLiteral("wifi PropertyChanged(\"Connected\", <false>)")).size(), 1);
}

void ListTest::poweringWifiOnScansAndConnectsFavourites()
{
    m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")},
                             {QStringLiteral("security"), QStringLiteral("none")}});
    QVERIFY(!m_client->service(homeId, QStringLiteral("Connect")).isError);
    setPowered(wifi, false);
    m_client->clear();
    QCOMPARE(setPowered(wifi, true).text(), QString());
    QVERIFY(m_client->waitForSignal(QStringLiteral("wifi PropertyChanged(\"Powered\", <true>)")));
    QVERIFY(m_client->waitForState(homeId, QStringLiteral("online")));
}

void ListTest::powerThatIsSoAlreadyIsAnError_data()
{
    QTest::addColumn<bool>("on");
    QTest::addColumn<QString>("error");
    QTest::newRow("on") << true << QStringLiteral("net.connman.Error.AlreadyEnabled: Already enabled");
    QTest::newRow("off") << false << QStringLiteral("net.connman.Error.AlreadyDisabled: Already disabled");
}

void ListTest::powerThatIsSoAlreadyIsAnError()
{
    QFETCH(bool, on);
    QFETCH(QString, error);
    m_simulator->setTechnologyProperty(wifi, powered, on);
    QCOMPARE(setPowered(wifi, on).text(), error);
}

void ListTest::powerNeedsABoolean()
{
    QCOMPARE(setPowered(wifi, 1).text(),
             QStringLiteral("net.connman.Error.InvalidArguments: Invalid arguments"));
}

void ListTest::unknownTechnologyPropertyIsRefused()
{
    QCOMPARE(m_client
                 ->technology(wifi, QStringLiteral("SetProperty"),
                              {QStringLiteral("Nope"), QVariant::fromValue(QDBusVariant(true))})
                 .text(),
             QStringLiteral("net.connman.Error.InvalidProperty: Invalid property"));
}

void ListTest::pluggedCableGetsOnline()
{
    m_simulator->setCable(true, {{QStringLiteral("address"), QStringLiteral("10.1.2.3")},
                                 {QStringLiteral("netmask"), QStringLiteral("255.255.0.0")},
                                 {QStringLiteral("gateway"), QStringLiteral("10.1.0.1")},
                                 {QStringLiteral("ipv6"), QStringLiteral("fd00::3")}});
    QVERIFY(m_client->waitForState(cableId, QStringLiteral("online")));
    QCOMPARE(
        m_client->property(cableId, QStringLiteral("IPv4")),
        QStringLiteral("{\"Address\": <\"10.1.2.3\">, \"Gateway\": <\"10.1.0.1\">, \"Method\": <\"dhcp\">, "
                       "\"Netmask\": <\"255.255.0.0\">}"));
    QCOMPARE(
        m_client->property(cableId, QStringLiteral("IPv6")),
        QStringLiteral("{\"Address\": <\"fd00::3\">, \"Method\": <\"auto\">, \"PrefixLength\": <byte 0x40>, "
                       "\"Privacy\": <\"disabled\">}"));
    QCOMPARE(m_client->property(cableId, QStringLiteral("Nameservers")), QStringLiteral("[\"10.1.0.1\"]"));
}

void ListTest::pluggedCableGetsOnlineBesideStrangers()
{
    m_simulator->addServices(0, 3);
    m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")}});
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, QStringLiteral("online")));
}

void ListTest::unpluggedCableGoes()
{
    m_simulator->setTiming(QStringLiteral("announce"), 0);
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, QStringLiteral("online")));
    m_client->clear();
    m_simulator->setCable(false);
    QVERIFY(m_client->waitForSignal(QStringLiteral("ServicesChanged(@a(oa{sv}) [], [objectpath")));
    QCOMPARE(m_client->states(cableId).join(QLatin1Char(' ')),
             QStringLiteral("configuration disconnect idle"));
}

void ListTest::cableWithoutDhcpFallsBackToALinkLocalAddress()
{
    m_simulator->setCable(true, {{QStringLiteral("dhcp"), false}});
    QVERIFY(m_client->waitForState(cableId, QStringLiteral("online")));
    QCOMPARE(
        m_client->property(cableId, QStringLiteral("IPv4")),
        QStringLiteral(
            "{\"Address\": <\"169.254.77.50\">, \"Method\": <\"auto\">, \"Netmask\": <\"255.255.0.0\">}"));
}

void ListTest::ethernetConnectIsAnsweredBeforeItsAddressIsThere()
{
    m_simulator->setTiming(QStringLiteral("autoConnect"), -1);
    m_simulator->setTiming(QStringLiteral("configuration"), 60000);
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForSignal(servicesChanged));
    QCOMPARE(m_client->service(cableId, QStringLiteral("Connect")).text(), QString());
    QCOMPARE(m_client->property(cableId, QStringLiteral("State")), QStringLiteral("\"configuration\""));
    QCOMPARE(m_client->service(cableId, QStringLiteral("Connect")).text(),
             QStringLiteral("net.connman.Error.InProgress: In progress"));
}

void ListTest::onlyTheDefaultConnectionGetsOnline()
{
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, QStringLiteral("online")));
    m_simulator->addNetwork({{QStringLiteral("ssid"), QStringLiteral("Home")},
                             {QStringLiteral("security"), QStringLiteral("none")}});
    QVERIFY(!m_client->service(homeId, QStringLiteral("Connect")).isError);
    QCOMPARE(m_client->property(homeId, QStringLiteral("State")), QStringLiteral("\"ready\""));
    m_simulator->setCable(false);
    QVERIFY(m_client->waitForState(homeId, QStringLiteral("online")));
}

void ListTest::managerTellsItsState()
{
    QCOMPARE(m_client->manager(QStringLiteral("GetProperties")).text(),
             QStringLiteral("{\"State\": <\"idle\">, \"OfflineMode\": <false>, \"SessionMode\": <false>}"));
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForSignal(QStringLiteral(" PropertyChanged(\"State\", <\"online\">)")));
    QVERIFY(m_client->manager(QStringLiteral("GetProperties"))
                .text()
                .contains(QStringLiteral("\"State\": <\"online\">")));
}

void ListTest::offlineModeIsToldAndChecked()
{
    const auto set = [this](const char *property, const QVariant &value) {
        return m_client
            ->manager(QStringLiteral("SetProperty"),
                      {QString::fromLatin1(property), QVariant::fromValue(QDBusVariant(value))})
            .text();
    };
    QCOMPARE(set("OfflineMode", true), QString());
    QVERIFY(m_client->waitForSignal(QStringLiteral(" PropertyChanged(\"OfflineMode\", <true>)")));
    QVERIFY(m_client->waitForSignal(QStringLiteral(" PropertyChanged(\"State\", <\"offline\">)")));
    QCOMPARE(set("OfflineMode", 1), QStringLiteral("net.connman.Error.InvalidArguments: Invalid arguments"));
    QCOMPARE(set("Nope", true), QStringLiteral("net.connman.Error.InvalidProperty: Invalid property"));
}

void ListTest::oneAgentForEachClient()
{
    const QVariantList path{QVariant::fromValue(QDBusObjectPath("/an/agent"))};
    QCOMPARE(m_client->manager(QStringLiteral("UnregisterAgent"), path).text(),
             QStringLiteral("net.connman.Error.NotRegistered: Not registered"));
    QCOMPARE(m_client->manager(QStringLiteral("RegisterAgent"), path).text(), QString());
    QCOMPARE(m_client->manager(QStringLiteral("RegisterAgent"), path).text(),
             QStringLiteral("net.connman.Error.AlreadyExists: Already exists"));
    QCOMPARE(m_client->manager(QStringLiteral("UnregisterAgent"), path).text(), QString());
    QCOMPARE(m_simulator->agents(), QList<QDBusObjectPath>());
}

void ListTest::oneCounterForEachPath()
{
    const QVariant path = QVariant::fromValue(QDBusObjectPath("/a/counter"));
    QCOMPARE(m_client->manager(QStringLiteral("RegisterCounter"), {path, 1U, 1U}).text(), QString());
    QCOMPARE(m_client->manager(QStringLiteral("RegisterCounter"), {path, 1U, 1U}).text(),
             QStringLiteral("net.connman.Error.AlreadyExists: Already exists"));
    QCOMPARE(m_client->manager(QStringLiteral("UnregisterCounter"), {path}).text(), QString());
    QCOMPARE(m_client->manager(QStringLiteral("UnregisterCounter"), {path}).text(),
             QStringLiteral("net.connman.Error.NotRegistered: Not registered"));
}

void ListTest::clockTellsTheTime()
{
    const Answer answer =
        m_client->call(QStringLiteral("net.connman"), QStringLiteral("/"),
                       QStringLiteral("net.connman.Clock"), QStringLiteral("GetProperties"));
    QVERIFY2(answer.text().contains(QStringLiteral("\"Time\": <uint64 ")), qPrintable(answer.text()));
}

void ListTest::unknownPathsAndMethodsAreRefusedAsByLibdbus_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("error");
    const QString connect = QStringLiteral("Connect");
    const QString unknownObject = QStringLiteral("UnknownObject");
    const QString unknownMethod = QStringLiteral("UnknownMethod");
    QTest::newRow("service that is gone")
        << QStringLiteral("/net/connman/service/gone") << connect << unknownObject;
    QTest::newRow("no such place") << QStringLiteral("/nope") << connect << unknownObject;
    QTest::newRow("on the way") << QStringLiteral("/net/connman") << connect << unknownMethod;
    QTest::newRow("other interface") << QStringLiteral("/") << connect << unknownMethod;
    QTest::newRow("no such method") << QStringLiteral("/net/connman/technology/wifi")
                                    << QStringLiteral("Nope") << unknownMethod;
}

void ListTest::unknownPathsAndMethodsAreRefusedAsByLibdbus()
{
    QFETCH(QString, path);
    QFETCH(QString, member);
    QFETCH(QString, error);
    QCOMPARE(
        m_client->call(QStringLiteral("net.connman"), path, QStringLiteral("net.connman.Service"), member)
            .text(),
        QStringLiteral("org.freedesktop.DBus.Error.%1: Method \"%2\" with signature \"\" on interface "
                       "\"net.connman.Service\" doesn't exist\n")
            .arg(error, member));
}

void ListTest::favouritesCanBeMoved()
{
    const QString a = QStringLiteral("wifi_a_managed_psk");
    const QString b = QStringLiteral("wifi_b_managed_psk");
    const QString stranger = QStringLiteral("wifi_c_managed_psk");
    m_simulator->addService(a, {{QStringLiteral("Favorite"), true}});
    m_simulator->addService(b, {{QStringLiteral("Favorite"), true}});
    m_simulator->addService(stranger);
    const auto move = [this](const QString &service, const char *member, const QString &target) {
        return m_client
            ->service(
                service, QString::fromLatin1(member),
                {QVariant::fromValue(QDBusObjectPath(QStringLiteral("/net/connman/service/") + target))})
            .text();
    };
    QCOMPARE(move(b, "MoveBefore", a), QString());
    QCOMPARE(m_simulator->services(), (QStringList{b, a, stranger}));
    QCOMPARE(move(b, "MoveAfter", a), QString());
    QCOMPARE(m_simulator->services(), (QStringList{a, b, stranger}));
    QCOMPARE(move(stranger, "MoveBefore", a),
             QStringLiteral("net.connman.Error.NotSupported: Not supported"));
    QCOMPARE(move(a, "MoveBefore", stranger),
             QStringLiteral("net.connman.Error.InvalidService: Invalid service"));
}

QTEST_GUILESS_MAIN(ListTest)
#include "ListTest.moc"
