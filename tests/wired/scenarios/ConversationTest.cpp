#include "Conversation.h"
#include "Suite.h"
#include "Text.h"

#include <memory>
#include <QDBusObjectPath>

using Lines = QStringList;

/// What ConnMan answers and tells on the wired link, word for word and in its order. The simulated one is
/// held to it: the daemon's tests are worth what it is.
class ConversationTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_connman.reset(); }

    void disconnectAndConnect();
    void statesThatAreThereAlready();
    void addressSetByHandAndGivenUpAgain();
    void connectWithAddressSetByHand();
    void ipv6OffAndOn();
    void proxy();
    void propertiesThatOnlyTellThemselves();
    void technologyOffAndOn();
    void refusals_data();
    void refusals();
    void agentIsRegisteredOnce();

private:
    void compareHeard(const Lines &expected) { QCOMPARE(m_connman->heard(expected.size()), expected); }

    std::unique_ptr<Conversation> m_connman;
};

namespace {

const Lines linkDown{"cable State configuration"_s, "ethernet Connected false"_s, "manager State idle"_s};
const Lines linkUp{"cable State ready"_s, "cable Proxy {}"_s, "ethernet Connected true"_s,
                   "manager State ready"_s};
const Lines leaseTold{
    "cable IPv4 {Address: LEASE, Method: dhcp, Netmask: 255.255.255.0}"_s,
    "cable IPv4 {Address: LEASE, Gateway: 198.51.100.1, Method: dhcp, Netmask: 255.255.255.0}"_s};
const Lines addressesGone{"cable IPv4 {}"_s, "cable IPv6 {}"_s};
const Lines disconnected{"cable State disconnect"_s, "cable Proxy {}"_s, "cable State idle"_s};

QVariantMap byHand()
{
    return {{"Method"_s, "manual"_s},
            {"Address"_s, "198.51.100.70"_s},
            {"Netmask"_s, "255.255.255.0"_s},
            {"Gateway"_s, "198.51.100.1"_s}};
}

QVariantMap method(const QString &name)
{
    return {{"Method"_s, name}};
}

} // namespace

void ConversationTest::init()
{
    m_connman = std::make_unique<Conversation>();
    QVERIFY(m_connman->begin());
}

// With one service there is no order to tell of: no ServicesChanged.
void ConversationTest::disconnectAndConnect()
{
    QCOMPARE(m_connman->askCable("Disconnect"), QString());
    compareHeard(linkDown + disconnected + addressesGone);
    QCOMPARE(m_connman->askCable("Connect"), QString());
    compareHeard(Lines("cable State configuration"_s) + linkUp + leaseTold);
}

void ConversationTest::statesThatAreThereAlready()
{
    QCOMPARE(m_connman->askCable("Connect"), "net.connman.Error.AlreadyConnected: Already connected"_s);
    QCOMPARE(m_connman->askCable("Disconnect"), QString());
    QCOMPARE(m_connman->askCable("Disconnect"), "net.connman.Error.NotConnected: Not connected"_s);
    QCOMPARE(m_connman->setOfTechnology("Powered", false), QString());
    QCOMPARE(m_connman->setOfTechnology("Powered", false),
             "net.connman.Error.AlreadyDisabled: Already disabled"_s);
}

void ConversationTest::addressSetByHandAndGivenUpAgain()
{
    const QString values =
        "Address: 198.51.100.70, Gateway: 198.51.100.1, Method: manual, Netmask: 255.255.255.0"_s;
    const Lines told{"cable IPv4 {}"_s, "cable IPv4.Configuration {%1}"_s.arg(values)};
    const Lines inPieces{"cable IPv4 {Method: manual}"_s,
                         "cable IPv4 {Address: 198.51.100.70, Method: manual, Netmask: 255.255.255.0}"_s,
                         "cable IPv4 {%1}"_s.arg(values)};
    const Lines off{"cable IPv4 {}"_s, "cable IPv4.Configuration {Method: off}"_s};
    const Lines byDhcp{"cable IPv4 {}"_s, "cable IPv4.Configuration {Method: dhcp}"_s};
    QCOMPARE(m_connman->setOfCable("IPv4.Configuration", byHand()), QString());
    compareHeard(linkDown + told + linkUp + inPieces);
    QCOMPARE(m_connman->setOfCable("IPv4.Configuration", method("off"_s)), QString());
    compareHeard(linkDown + off);
    QCOMPARE(m_connman->setOfCable("IPv4.Configuration", method("dhcp"_s)), QString());
    compareHeard(byDhcp + linkUp + leaseTold);
}

void ConversationTest::connectWithAddressSetByHand()
{
    const Lines byHandTold{
        "cable IPv4 {Address: 198.51.100.70, Method: manual, Netmask: 255.255.255.0}"_s,
        "cable IPv4 {Address: 198.51.100.70, Gateway: 198.51.100.1, Method: manual, Netmask: 255.255.255.0}"_s};
    QCOMPARE(m_connman->setOfCable("IPv4.Configuration", byHand()), QString());
    QVERIFY(!m_connman->heard(12).isEmpty());

    QCOMPARE(m_connman->askCable("Disconnect"), QString());
    compareHeard(linkDown + disconnected + addressesGone);
    QCOMPARE(m_connman->askCable("Connect"), QString());
    compareHeard(Lines("cable State configuration"_s) + linkUp + byHandTold);
}

void ConversationTest::ipv6OffAndOn()
{
    QCOMPARE(m_connman->setOfCable("IPv6.Configuration", method("off"_s)), QString());
    compareHeard(Lines{"cable IPv6 {}"_s, "cable IPv6.Configuration {Method: off}"_s});
    QCOMPARE(m_connman->setOfCable("IPv6.Configuration", method("auto"_s)), QString());
    compareHeard(Lines{"cable IPv6 {}"_s, "cable IPv6.Configuration {Method: auto, Privacy: disabled}"_s});
}

void ConversationTest::proxy()
{
    QCOMPARE(m_connman->setOfCable("Proxy.Configuration", method("direct"_s)), QString());
    compareHeard(Lines{"cable Proxy.Configuration {Method: direct}"_s, "cable Proxy {Method: direct}"_s});
    QCOMPARE(m_connman->setOfCable("Proxy.Configuration", method("auto"_s)), QString());
    compareHeard(Lines{"cable Proxy.Configuration {Method: auto}"_s, "cable Proxy {}"_s});
}

void ConversationTest::propertiesThatOnlyTellThemselves()
{
    QCOMPARE(m_connman->setOfCable("AutoConnect", true), QString()); // as it is
    QCOMPARE(m_connman->setOfCable("AutoConnect", false), QString());
    QCOMPARE(m_connman->setOfCable("AutoConnect", true), QString());
    QCOMPARE(m_connman->setOfCable("mDNS.Configuration", true), QString());
    QCOMPARE(m_connman->setOfCable("Nameservers.Configuration", Lines{"192.0.2.1"_s, "no address"_s}),
             QString());
    QCOMPARE(m_connman->setOfCable("Domains.Configuration", Lines("example.org"_s)), QString());
    QCOMPARE(m_connman->setOfCable("Timeservers.Configuration", Lines("time.example.org"_s)), QString());
    compareHeard(Lines{"cable AutoConnect false"_s, "cable AutoConnect true"_s,
                       "cable mDNS.Configuration true"_s, "cable Nameservers.Configuration [192.0.2.1]"_s,
                       "cable Domains.Configuration [example.org]"_s,
                       "cable Timeservers.Configuration [time.example.org]"_s});
}

void ConversationTest::technologyOffAndOn()
{
    QVERIFY2(m_connman->askTechnology("GetProperties").contains("TetheringFreq: 0, Type: ethernet"_s),
             qPrintable(m_connman->askTechnology("GetProperties")));
    QCOMPARE(m_connman->setOfTechnology("Powered", false), QString());
    const Lines off{"ethernet Powered false"_s, "ServicesChanged"_s};
    compareHeard(linkDown + disconnected + addressesGone + off);
    QVERIFY(m_connman->askCable("GetProperties").startsWith("org.freedesktop.DBus.Error.UnknownObject: "_s));
    QCOMPARE(m_connman->setOfTechnology("Powered", true), QString());
    // Whether the service or its state comes first is a matter of how quick the DHCP server is.
    const Lines on = m_connman->heard(4);
    QCOMPARE(on.value(0), "ethernet Powered true"_s);
    for (const QString &line : {"ethernet Connected true"_s, "manager State ready"_s, "ServicesChanged"_s}) {
        QVERIFY2(on.contains(line), qPrintable(on.join(QLatin1Char('\n'))));
    }
}

void ConversationTest::refusals_data()
{
    const QString invalidProperty = "net.connman.Error.InvalidProperty: Invalid property"_s;
    const QString invalidArguments = "net.connman.Error.InvalidArguments: Invalid arguments"_s;
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("error");
    QTest::newRow("read-only") << "State"_s << QVariant("idle"_s) << invalidProperty;
    QTest::newRow("read-only dictionary") << "IPv4"_s << QVariant(byHand()) << invalidProperty;
    QTest::newRow("unknown") << "Nonsense"_s << QVariant(1) << invalidProperty;
    QTest::newRow("type") << "AutoConnect"_s << QVariant("yes"_s) << invalidArguments;
    QTest::newRow("method") << "IPv4.Configuration"_s << QVariant(method("nonsense"_s)) << invalidArguments;
    QTest::newRow("proxy") << "Proxy.Configuration"_s << QVariant(method("nonsense"_s)) << invalidArguments;
}

void ConversationTest::refusals()
{
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    QFETCH(QString, error);
    QCOMPARE(m_connman->setOfCable(property.toLatin1().constData(), value), error);
    QCOMPARE(m_connman->askCable("Remove"), "net.connman.Error.NotSupported: Not supported"_s);
    QCOMPARE(m_connman->askTechnology("Scan"), "net.connman.Error.NotSupported: Not supported"_s);
    compareHeard(Lines());
}

void ConversationTest::agentIsRegisteredOnce()
{
    const QVariantList agent{QVariant::fromValue(QDBusObjectPath("/agent"_s))};
    QCOMPARE(m_connman->askManager("RegisterAgent", agent), QString());
    QCOMPARE(m_connman->askManager("RegisterAgent", agent),
             "net.connman.Error.AlreadyExists: Already exists"_s);
    QCOMPARE(m_connman->askManager("UnregisterAgent", agent), QString());
}

static const Suite<ConversationTest> conversationTest;
#include "ConversationTest.moc"
