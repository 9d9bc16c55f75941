// ConnMan's list of services, what it announces of it, and scanning for more.

#include "ConnmanWire.h"
#include "DeviceFixture.h"
#include "Suite.h"
#include "Text.h"
#include <QDBusArgument>
#include <QElapsedTimer>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString ethernet = "ethernet"_s;

QString path(const char *identifier)
{
    return "\"/net/connman/service/%1\""_s.arg(QLatin1String(identifier));
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
};

void ListTest::onlyNewServicesAreAnnouncedWithProperties()
{
    m_simulator->addService("wifi_a_managed_psk"_s);
    QVERIFY(m_client->waitForSignal(servicesChanged));
    m_client->clear();
    m_simulator->addService("wifi_b_managed_psk"_s);
    QVERIFY(m_client->waitForSignal(servicesChanged));
    const QString line = m_client->signalLines(servicesChanged).first();
    QVERIFY2(
        line.contains("(objectpath %1, @a{sv} {}), (%2, {\"Type\": <\"wifi\">, \"Security\": "
                      "<[\"psk\"]>, \"State\": <\"idle\">, \"Strength\": <byte 0x3c>, "
                      "\"Favorite\": <false>"_s.arg(path("wifi_a_managed_psk"), path("wifi_b_managed_psk"))),
        qPrintable(line));
    QVERIFY2(line.endsWith("], @ao [])"_s), qPrintable(line));
}

void ListTest::removedServicesAreAnnouncedByPath()
{
    m_simulator->addService("wifi_a_managed_psk"_s);
    m_simulator->addService("wifi_b_managed_psk"_s);
    m_simulator->removeService("wifi_a_managed_psk"_s);
    QVERIFY(m_client->waitForSignal("ServicesChanged([(objectpath %1, @a{sv} {})], [objectpath %2])"_s.arg(
        path("wifi_b_managed_psk"), path("wifi_a_managed_psk"))));
}

void ListTest::newServiceTellsNothingBeforeItsAnnouncement()
{
    m_simulator->setTiming("configuration"_s, 50);
    m_simulator->setTiming("announce"_s, 200);
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForSignal(servicesChanged));
    // By then the service is connected: nobody was told how it came to that.
    QVERIFY(m_client->signalLines(servicesChanged).first().contains("\"State\": <\"online\">"_s));
    QCOMPARE(m_client->states(cableId), QStringList());
}

void ListTest::listIsInConnmansOrder()
{
    const auto add = [this](const char *name, const char *state, bool favorite, uchar strength) {
        m_simulator->addService("wifi_%1_managed_psk"_s.arg(QLatin1String(name)),
                                {{"State"_s, QString::fromLatin1(state)},
                                 {"Favorite"_s, favorite},
                                 {"Strength"_s, QVariant::fromValue(strength)}});
    };
    m_simulator->setTiming("autoConnect"_s, -1);
    add("weak", "idle", false, 10);
    add("strong", "idle", false, 90);
    add("known", "idle", true, 5);
    add("ready", "ready", true, 20);
    add("online", "online", true, 20);
    QVERIFY(!m_client->technology(wifi, "Scan"_s).isError);
    QStringList names;
    for (const QString &identifier : m_simulator->services()) {
        names.append(identifier.section(QLatin1Char('_'), 1, 1));
    }
    QCOMPARE(names.join(QLatin1Char(' ')), "online ready known strong weak"_s);
}

void ListTest::fiveThousandServicesAreListed()
{
    m_client->stopListening(); // writing down the announcement takes longer than making it
    m_simulator->addServices(0, 5000);
    const Answer services = m_client->manager("GetServices"_s);
    const Answer properties =
        m_client->service("wifi_020000000200_00004999_managed_psk"_s, "GetProperties"_s);
    QVERIFY(!properties.isError);
    QCOMPARE(qdbus_cast<simulator::ObjectRecordList>(services.arguments.first()).size(), 5000);
}

void ListTest::scanIsAnsweredWhenItIsComplete()
{
    m_simulator->setTiming("scan"_s, 200);
    QElapsedTimer elapsed;
    elapsed.start();
    QCOMPARE(m_client->technology(wifi, "Scan"_s).text(), QString());
    QVERIFY2(elapsed.elapsed() >= 190, qPrintable(QString::number(elapsed.elapsed())));
}

void ListTest::foundServicesAreAnnouncedAfterTheScansReply()
{
    m_simulator->setTiming("announce"_s, 200);
    m_simulator->addNetwork({{"ssid"_s, "Home"_s}, {"atOnce"_s, false}});
    m_client->clear();
    QVERIFY(!m_client->technology(wifi, "Scan"_s).isError);
    QCOMPARE(m_client->signalLines(servicesChanged), QStringList());
    QVERIFY(m_client->waitForSignal(servicesChanged));
}

void ListTest::secondScanSharesTheFirstOnesAnswer()
{
    m_simulator->setTiming("scan"_s, 300);
    m_simulator->setTiming("announce"_s, 150);
    m_simulator->addNetwork({{"ssid"_s, "Home"_s}, {"atOnce"_s, false}});
    const QDBusMessage scan = QDBusMessage::createMethodCall(
        "net.connman"_s, "/net/connman/technology/wifi"_s, "net.connman.Technology"_s, "Scan"_s);
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
    QCOMPARE(m_client->technology(ethernet, "Scan"_s).text(),
             "net.connman.Error.NotSupported: Not supported"_s);
}

void ListTest::scanWithoutPowerHasNoCarrier()
{
    m_simulator->setTechnologyProperty(wifi, "Powered"_s, false);
    QCOMPARE(m_client->technology(wifi, "Scan"_s).text(), "net.connman.Error.NoCarrier: No carrier"_s);
}

static const Suite<ListTest> listTest;
#include "ListTest.moc"
