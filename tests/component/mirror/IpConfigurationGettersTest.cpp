// The IP configuration of a ConnmanService: which of ConnMan's dictionaries counts.

#include "ConnmanService.h"
#include "MirrorWorld.h"
#include "OddValues.h"
#include "Suite.h"
#include "Text.h"

#include <QMap>
#include <QTest>

#include <memory>
#include <optional>

using test_support::Fault;

namespace {

const QLatin1String PropertiesLog("ConnmanService.properties");
const QLatin1String Path("/net/connman/service/wifi_x_managed_psk");
const QLatin1String Ipv4("IPv4");
const QLatin1String Ipv4Configuration("IPv4.Configuration");
const QLatin1String Ipv6Configuration("IPv6.Configuration");
const QLatin1String Method("Method");
const QLatin1String Address("Address");
const QLatin1String PrefixLength("PrefixLength");

QVariantMap withMethod(const QString &word, const QString &address)
{
    return {{Method, word}, {Address, address}};
}

QString line(const QString &text)
{
    return critical(PropertiesLog, text);
}

QString methodIsInvalid()
{
    return line("Value of Method is invalid"_s);
}

QString emptyIpv4()
{
    return line("Empty or missing ipv4-configuration."_s);
}

QString emptyIpv6()
{
    return line("Empty or missing ipv6-configuration."_s);
}

QString complaintAbout(const QString &complaint, const QString &key)
{
    return line("%1 property \"%2\" of service \"%3\""_s.arg(complaint, key, QString(Path)));
}

} // namespace

class IpConfigurationGettersTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void methodDecidesWhichIpv4DictionaryCounts_data();
    void methodDecidesWhichIpv4DictionaryCounts();
    void missingIpv4IsOneLineAndEmpty();
    void ipv4OfAnotherTypeIsOneLineAndEmpty_data();
    void ipv4OfAnotherTypeIsOneLineAndEmpty();
    void ipv4ConfigurationOfAnotherTypeIsOneLine();
    void everyIpv4ValueIsText();
    void valueOfAnEmptyIpv4ConfigurationIsOneLine();
    void valueOfAnUndecidableIpv4ConfigurationIsTwoLines();
    void ipv4ValueThatIsMissingIsOneLine();
    void ipv4ValueThatIsNoTextIsOneLine();

    void ipv6PrefixLengthIsAnInt();
    void ipv6ConfigurationWithoutPrefixLengthIsUnchanged();
    void ipv6ConfigurationIsLoggedForDebugging();
    void ipv6ValuesAreText();
    void valueOfAnEmptyIpv6ConfigurationIsOneLine();
    void valueOfAMissingIpv6ConfigurationIsTwoLines();
    void ipv6ValueThatIsMissingIsOneLine();
    void ipv6ValueThatIsNoTextIsOneLine();

private:
    void fill(const QVariantMap &properties);

    std::unique_ptr<MirrorWorld> m_world;
    std::unique_ptr<ConnmanService> m_service;
};

void IpConfigurationGettersTest::initTestCase()
{
    m_world = std::make_unique<MirrorWorld>();
    m_service = std::make_unique<ConnmanService>(m_world->connection(), QDBusObjectPath(Path), nullptr);
}

void IpConfigurationGettersTest::cleanupTestCase()
{
    m_service.reset();
    m_world.reset();
}

/// Makes `properties` the whole cache.
void IpConfigurationGettersTest::fill(const QVariantMap &properties)
{
    {
        const Fault fault = m_world->answerGetProperties(properties);
        m_service->dbusUpdateProperties();
    }
    m_world->simulator().clearFaults();
    m_world->log().clear();
    QCOMPARE(m_service->properties().keys(), properties.keys());
}

void IpConfigurationGettersTest::methodDecidesWhichIpv4DictionaryCounts_data()
{
    using Dictionary = std::optional<QVariantMap>;
    QTest::addColumn<QVariantMap>("properties");
    QTest::addColumn<QVariantMap>("expected");
    QTest::addColumn<QStringList>("lines");
    const auto row = [](const char *title, const QVariantMap &inUse, const Dictionary &configured,
                        const QVariantMap &expected, const QStringList &lines) {
        QVariantMap properties{{Ipv4, inUse}};
        if (configured) {
            properties.insert(Ipv4Configuration, *configured);
        }
        QTest::newRow(title) << properties << expected << lines;
    };
    const QVariantMap nothing;
    const QStringList silence;
    const QStringList invalid{methodIsInvalid()};
    const QString used = "10.0.0.2"_s;
    const QString set = "192.168.1.2"_s;
    const QVariantMap dhcp = withMethod("dhcp"_s, used);
    const QVariantMap automatic = withMethod("auto"_s, used);
    const QVariantMap manualInUse = withMethod("manual"_s, used);
    const QVariantMap setDhcp = withMethod("dhcp"_s, set);
    const QVariantMap setManual = withMethod("manual"_s, set);
    const QVariantMap addressOnly{{Address, used}};

    row("dhcp in use", dhcp, setDhcp, dhcp, silence);
    row("dhcp in use, manual set", dhcp, setManual, dhcp, silence);
    row("dhcp in use, nothing set", dhcp, std::nullopt, dhcp, silence);
    row("auto in use", automatic, setDhcp, automatic, silence);
    row("manual in use, manual set", manualInUse, setManual, setManual, silence);
    row("manual in use, dhcp set", manualInUse, setDhcp, setDhcp, silence);
    row("manual in use, empty set", manualInUse, nothing, nothing, silence);
    row("manual in use, nothing set", manualInUse, std::nullopt, nothing, silence);
    row("none in use, dhcp set", nothing, setDhcp, setDhcp, silence);
    row("none in use, auto set", nothing, withMethod("auto"_s, set), withMethod("auto"_s, set), silence);
    row("none in use, manual set", nothing, setManual, setManual, silence);
    row("address only in use, dhcp set", addressOnly, setDhcp, addressOnly, silence);
    row("address only in use, manual set", addressOnly, setManual, setManual, silence);
    row("none in use, empty set", nothing, nothing, nothing, invalid);
    row("none in use, nothing set", nothing, std::nullopt, nothing, invalid);
    row("address only in both", addressOnly, addressOnly, nothing, invalid);
    row("off in use", withMethod("off"_s, used), setDhcp, nothing, invalid);
    row("fixed in use", withMethod("fixed"_s, used), setManual, nothing, invalid);
    row("capitalised in use", withMethod("DHCP"_s, used), setDhcp, nothing, invalid);
    row("empty method in use", withMethod(QString(), used), setDhcp, nothing, invalid);
    row("off set", nothing, withMethod("off"_s, set), nothing, invalid);
    row("method in use is a list of numbers", {{Method, QVariant::fromValue(QList<int>{1})}}, setDhcp,
        nothing, invalid);
}

void IpConfigurationGettersTest::methodDecidesWhichIpv4DictionaryCounts()
{
    QFETCH(QVariantMap, properties);
    QFETCH(QVariantMap, expected);
    QFETCH(QStringList, lines);
    fill(properties);
    QCOMPARE(m_service->getIpv4Configuration(), expected);
    QCOMPARE(m_world->complaints(), lines);
}

void IpConfigurationGettersTest::missingIpv4IsOneLineAndEmpty()
{
    fill({{Ipv4Configuration, withMethod("dhcp"_s, "10.0.0.2"_s)}});
    QCOMPARE(m_service->getIpv4Configuration(), QVariantMap());
    QCOMPARE(m_world->complaints(), {complaintAbout("Missing"_s, Ipv4)});
}

void IpConfigurationGettersTest::ipv4OfAnotherTypeIsOneLineAndEmpty_data()
{
    QTest::addColumn<QVariant>("value");
    const QVector<OddValue> odd = rawOddValues();
    for (int i = 0; i < odd.size(); ++i) {
        QTest::addRow("%d %s", i, odd[i].signature) << odd[i].value;
    }
    QTest::newRow("text") << QVariant("dhcp"_s);
    QTest::newRow("number") << QVariant(4);
    QTest::newRow("list of texts") << QVariant(QStringList{"dhcp"_s});
}

void IpConfigurationGettersTest::ipv4OfAnotherTypeIsOneLineAndEmpty()
{
    QFETCH(QVariant, value);
    fill({{Ipv4, value}});
    QCOMPARE(m_service->getIpv4Configuration(), QVariantMap());
    QCOMPARE(m_world->complaints(), {complaintAbout("Invalid type of"_s, Ipv4)});
}

void IpConfigurationGettersTest::ipv4ConfigurationOfAnotherTypeIsOneLine()
{
    const QVariantMap dhcp = withMethod("dhcp"_s, "10.0.0.2"_s);
    fill({{Ipv4, dhcp}, {Ipv4Configuration, "dhcp"_s}});
    QCOMPARE(m_service->getIpv4Configuration(), dhcp);
    QCOMPARE(m_world->complaints(), {complaintAbout("Invalid type of"_s, Ipv4Configuration)});
}

void IpConfigurationGettersTest::everyIpv4ValueIsText()
{
    const QVariantMap values{{Method, "dhcp"_s},
                             {Address, "10.0.0.2"_s},
                             {"Netmask"_s, "255.0.0.0"_s},
                             {"Gateway"_s, "10.0.0.1"_s}};
    fill({{Ipv4, values}});
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        QCOMPARE(m_service->getIpv4ConfigurationValue(it.key()), it.value().toString());
    }
    QCOMPARE(m_world->complaints(), QStringList());
}

void IpConfigurationGettersTest::valueOfAnEmptyIpv4ConfigurationIsOneLine()
{
    fill({{Ipv4, withMethod("manual"_s, "10.0.0.2"_s)}});
    QCOMPARE(m_service->getIpv4ConfigurationValue(Address), QString());
    QCOMPARE(m_world->complaints(), {emptyIpv4()});
}

void IpConfigurationGettersTest::valueOfAnUndecidableIpv4ConfigurationIsTwoLines()
{
    fill({{Ipv4, QVariantMap()}});
    QCOMPARE(m_service->getIpv4ConfigurationValue(Address), QString());
    const QStringList expected{methodIsInvalid(), emptyIpv4()};
    QCOMPARE(m_world->complaints(), expected);
}

void IpConfigurationGettersTest::ipv4ValueThatIsMissingIsOneLine()
{
    fill({{Ipv4, withMethod("dhcp"_s, "10.0.0.2"_s)}});
    QCOMPARE(m_service->getIpv4ConfigurationValue("Gateway"_s), QString());
    QCOMPARE(m_world->complaints(), {line("Missing property \"Gateway\""_s)});
}

void IpConfigurationGettersTest::ipv4ValueThatIsNoTextIsOneLine()
{
    const QVariantMap inner{{"a"_s, 1}};
    fill({{Ipv4, QVariantMap{{Method, "dhcp"_s}, {Address, inner}}}});
    QCOMPARE(m_service->getIpv4ConfigurationValue(Address), QString());
    QCOMPARE(m_world->complaints(), {line("Invalid type of property \"Address\""_s)});
}

void IpConfigurationGettersTest::ipv6PrefixLengthIsAnInt()
{
    fill({{Ipv6Configuration, QVariantMap{{PrefixLength, QVariant::fromValue(uchar(64))}}}});
    const QVariant length = m_service->getIpv6Configuration().value(PrefixLength);
    QCOMPARE(length.userType(), int(QMetaType::Int));
    QCOMPARE(length.toInt(), 64);
    QCOMPARE(m_world->complaints(), QStringList());
}

void IpConfigurationGettersTest::ipv6ConfigurationWithoutPrefixLengthIsUnchanged()
{
    const QVariantMap automatic{{Method, "auto"_s}};
    fill({{Ipv6Configuration, automatic}});
    QCOMPARE(m_service->getIpv6Configuration(), automatic);
}

void IpConfigurationGettersTest::ipv6ConfigurationIsLoggedForDebugging()
{
    fill({{Ipv6Configuration,
           QVariantMap{{Method, "auto"_s}, {PrefixLength, QVariant::fromValue(uchar(64))}}}});
    m_service->getIpv6Configuration();
    QCOMPARE(m_world->debugLines(PropertiesLog),
             {"QMap((\"Method\", QVariant(QString, \"auto\"))(\"PrefixLength\", QVariant(int, 64)))"_s});
}

void IpConfigurationGettersTest::ipv6ValuesAreText()
{
    fill({{Ipv6Configuration,
           QVariantMap{{Address, "fd00::2"_s}, {PrefixLength, QVariant::fromValue(uchar(64))}}}});
    QCOMPARE(m_service->getIpv6ConfigurationValue(Address), "fd00::2"_s);
    QCOMPARE(m_service->getIpv6ConfigurationValue(PrefixLength), "64"_s);
    QCOMPARE(m_world->complaints(), QStringList());
}

void IpConfigurationGettersTest::valueOfAnEmptyIpv6ConfigurationIsOneLine()
{
    fill({{Ipv6Configuration, QVariantMap()}});
    QCOMPARE(m_service->getIpv6ConfigurationValue(Address), QString());
    QCOMPARE(m_world->complaints(), {emptyIpv6()});
}

void IpConfigurationGettersTest::valueOfAMissingIpv6ConfigurationIsTwoLines()
{
    fill({});
    QCOMPARE(m_service->getIpv6ConfigurationValue(Address), QString());
    const QStringList expected{complaintAbout("Missing"_s, Ipv6Configuration), emptyIpv6()};
    QCOMPARE(m_world->complaints(), expected);
}

void IpConfigurationGettersTest::ipv6ValueThatIsMissingIsOneLine()
{
    fill({{Ipv6Configuration, QVariantMap{{Method, "auto"_s}}}});
    QCOMPARE(m_service->getIpv6ConfigurationValue(Address), QString());
    QCOMPARE(m_world->complaints(), {line("Missing property \"Address\""_s)});
}

void IpConfigurationGettersTest::ipv6ValueThatIsNoTextIsOneLine()
{
    fill({{Ipv6Configuration, QVariantMap{{Address, QVariant::fromValue(QList<int>{1})}}}});
    QCOMPARE(m_service->getIpv6ConfigurationValue(Address), QString());
    QCOMPARE(m_world->complaints(), {line("Invalid type of property \"Address\""_s)});
}

static const Suite<IpConfigurationGettersTest> suite;
#include "IpConfigurationGettersTest.moc"
