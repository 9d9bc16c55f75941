// ConnMan's list of services, what it announces of it, and scanning for more.

#include "ConnmanWire.h"
#include "DeviceFixture.h"
#include "Suite.h"
#include <QDBusArgument>
#include <QElapsedTimer>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString wifi = QStringLiteral("wifi");
const QString ethernet = QStringLiteral("ethernet");
const QString cableId = QStringLiteral("ethernet_020000000100_cable");
const QString servicesChanged = QStringLiteral("ServicesChanged");

QString path(const char *identifier)
{
    return QStringLiteral("\"/net/connman/service/%1\"").arg(QLatin1String(identifier));
}
} // namespace

class ListTest : public DeviceFixture
{
    Q_OBJECT

private slots:
    void onlyNewServicesAreAnnouncedWithProperties();
    void removedServicesAreAnnouncedByPath();
    void newServiceTellsNothingBeforeItsAnnouncement();
    void listIsInConnmansOrder();
    void fiveThousandServicesAreListed();
    void scanIsAnsweredWhenItIsComplete();
    void foundServicesAreAnnouncedAfterTheScansReply();
    void secondScanSharesTheFirstOnesAnswer();
    void scanOfEthernetIsNotSupported();
    void scanWithoutPowerHasNoCarrier();
    void favouritesCanBeMoved();
};

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

void ListTest::fiveThousandServicesAreListed()
{
    m_client->stopListening(); // writing down the announcement takes longer than making it
    m_simulator->addServices(0, 5000);
    const Answer services = m_client->manager(QStringLiteral("GetServices"));
    const Answer properties = m_client->service(QStringLiteral("wifi_020000000200_00004999_managed_psk"),
                                                QStringLiteral("GetProperties"));
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
    m_simulator->setTiming(QStringLiteral("announce"), 150);
    m_simulator->addNetwork(
        {{QStringLiteral("ssid"), QStringLiteral("Home")}, {QStringLiteral("atOnce"), false}});
    const QDBusMessage scan = QDBusMessage::createMethodCall(
        QStringLiteral("net.connman"), QStringLiteral("/net/connman/technology/wifi"),
        QStringLiteral("net.connman.Technology"), QStringLiteral("Scan"));
    m_client->clear();
    PendingAnswer first(m_client->connection(), scan);
    PendingAnswer second(m_client->connection(), scan);
    // A scan of its own would be answered when the first one's finds have long been announced.
    QStringList announcedBefore;
    connect(&second, &PendingAnswer::come, this,
            [&] { announcedBefore = m_client->signalLines(servicesChanged); });
    QVERIFY(!first.wait().isError);
    QVERIFY(!second.wait().isError);
    QCOMPARE(announcedBefore, QStringList());
    QVERIFY(m_client->waitForSignal(servicesChanged));
}

void ListTest::scanOfEthernetIsNotSupported()
{
    QCOMPARE(m_client->technology(ethernet, QStringLiteral("Scan")).text(),
             QStringLiteral("net.connman.Error.NotSupported: Not supported"));
}

void ListTest::scanWithoutPowerHasNoCarrier()
{
    m_simulator->setTechnologyProperty(wifi, QStringLiteral("Powered"), false);
    QCOMPARE(m_client->technology(wifi, QStringLiteral("Scan")).text(),
             QStringLiteral("net.connman.Error.NoCarrier: No carrier"));
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

static const Suite<ListTest> suite;
#include "ListTest.moc"
