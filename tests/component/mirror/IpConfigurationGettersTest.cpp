// The IP configuration of a ConnmanService: which of ConnMan's dictionaries counts.

#include "CachedServiceFixture.h"
#include "MirrorNames.h"
#include "OddValues.h"
#include "Suite.h"
#include "Text.h"

#include <QMap>
#include <QTest>

#include <optional>

namespace {

const QLatin1String Ipv4Configuration("IPv4.Configuration");
const QLatin1String Ipv6Configuration("IPv6.Configuration");
const QLatin1String Method("Method");
const QLatin1String Address("Address");
const QLatin1String PrefixLength("PrefixLength");

QVariantMap withMethod(const QString &word, const QString &address)
{
    return {{Method, word}, {Address, address}};
}

} // namespace

class IpConfigurationGettersTest : public CachedServiceFixture
{
    Q_OBJECT

private slots:
    void methodDecidesWhichIpv4DictionaryCounts_data();
    void methodDecidesWhichIpv4DictionaryCounts();
    void missingIpv4IsOneLineAndEmpty();
    void ipv4OfAnotherTypeIsOneLineAndEmpty_data();
    void ipv4OfAnotherTypeIsOneLineAndEmpty();
    void ipv4ConfigurationOfAnotherTypeIsOneLine();
    void everyIpv4ValueIsText();

    void ipv6PrefixLengthIsAnInt();
    void ipv6ConfigurationWithoutPrefixLengthIsUnchanged();
    void ipv6ConfigurationIsLoggedForDebugging();
    void ipv6ValuesAreText();

    void valueThatCannotBeHadIsEmptyAndSaysWhy_data();
    void valueThatCannotBeHadIsEmptyAndSaysWhy();

private:
    static QString methodIsInvalid() { return line("Value of Method is invalid"_s); }
};

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
    QCOMPARE(service().getIpv4Configuration(), expected);
    QCOMPARE(complaints(), lines);
}

void IpConfigurationGettersTest::missingIpv4IsOneLineAndEmpty()
{
    fill({{Ipv4Configuration, withMethod("dhcp"_s, "10.0.0.2"_s)}});
    QCOMPARE(service().getIpv4Configuration(), QVariantMap());
    QCOMPARE(complaints(), {missing(Ipv4)});
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
    QCOMPARE(service().getIpv4Configuration(), QVariantMap());
    QCOMPARE(complaints(), {invalidType(Ipv4)});
}

void IpConfigurationGettersTest::ipv4ConfigurationOfAnotherTypeIsOneLine()
{
    const QVariantMap dhcp = withMethod("dhcp"_s, "10.0.0.2"_s);
    fill({{Ipv4, dhcp}, {Ipv4Configuration, "dhcp"_s}});
    QCOMPARE(service().getIpv4Configuration(), dhcp);
    QCOMPARE(complaints(), {invalidType(Ipv4Configuration)});
}

void IpConfigurationGettersTest::everyIpv4ValueIsText()
{
    const QVariantMap values{{Method, "dhcp"_s},
                             {Address, "10.0.0.2"_s},
                             {"Netmask"_s, "255.0.0.0"_s},
                             {"Gateway"_s, "10.0.0.1"_s}};
    fill({{Ipv4, values}});
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        QCOMPARE(service().getIpv4ConfigurationValue(it.key()), it.value().toString());
    }
    QCOMPARE(complaints(), QStringList());
}

void IpConfigurationGettersTest::ipv6PrefixLengthIsAnInt()
{
    fill({{Ipv6Configuration, QVariantMap{{PrefixLength, QVariant::fromValue(uchar(64))}}}});
    const QVariant length = service().getIpv6Configuration().value(PrefixLength);
    QCOMPARE(length.userType(), int(QMetaType::Int));
    QCOMPARE(length.toInt(), 64);
    QCOMPARE(complaints(), QStringList());
}

void IpConfigurationGettersTest::ipv6ConfigurationWithoutPrefixLengthIsUnchanged()
{
    const QVariantMap automatic{{Method, "auto"_s}};
    fill({{Ipv6Configuration, automatic}});
    QCOMPARE(service().getIpv6Configuration(), automatic);
}

void IpConfigurationGettersTest::ipv6ConfigurationIsLoggedForDebugging()
{
    fill({{Ipv6Configuration,
           QVariantMap{{Method, "auto"_s}, {PrefixLength, QVariant::fromValue(uchar(64))}}}});
    service().getIpv6Configuration();
    QCOMPARE(debugLines("ConnmanService.properties"_s),
             {"QMap((\"Method\", QVariant(QString, \"auto\"))(\"PrefixLength\", QVariant(int, 64)))"_s});
}

void IpConfigurationGettersTest::ipv6ValuesAreText()
{
    fill({{Ipv6Configuration,
           QVariantMap{{Address, "fd00::2"_s}, {PrefixLength, QVariant::fromValue(uchar(64))}}}});
    QCOMPARE(service().getIpv6ConfigurationValue(Address), "fd00::2"_s);
    QCOMPARE(service().getIpv6ConfigurationValue(PrefixLength), "64"_s);
    QCOMPARE(complaints(), QStringList());
}

void IpConfigurationGettersTest::valueThatCannotBeHadIsEmptyAndSaysWhy_data()
{
    QTest::addColumn<QVariantMap>("properties");
    QTest::addColumn<bool>("isIpv6");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("lines");
    const QString emptyIpv4 = line("Empty or missing ipv4-configuration."_s);
    const QString emptyIpv6 = line("Empty or missing ipv6-configuration."_s);
    const auto ipv4 = [](const char *title, const QVariantMap &inUse, const QString &key,
                         const QStringList &lines) {
        QTest::addRow("IPv4, %s", title) << QVariantMap{{Ipv4, inUse}} << false << key << lines;
    };
    const auto ipv6 = [](const char *title, const QVariantMap &properties, const QStringList &lines) {
        QTest::addRow("IPv6, %s", title) << properties << true << QString(Address) << lines;
    };
    const auto configured = [](const QVariantMap &values) {
        return QVariantMap{{Ipv6Configuration, values}};
    };
    const QString unusable = line("Invalid type of property \"Address\""_s);

    ipv4("empty", withMethod("manual"_s, "10.0.0.2"_s), Address, {emptyIpv4});
    ipv4("undecidable", {}, Address, {methodIsInvalid(), emptyIpv4});
    ipv4("value missing", withMethod("dhcp"_s, "10.0.0.2"_s), "Gateway"_s,
         {line("Missing property \"Gateway\""_s)});
    ipv4("value no text", {{Method, "dhcp"_s}, {Address, QVariantMap{{"a"_s, 1}}}}, Address, {unusable});
    ipv6("empty", configured({}), {emptyIpv6});
    ipv6("missing", {}, {missing(Ipv6Configuration), emptyIpv6});
    ipv6("value missing", configured({{Method, "auto"_s}}), {line("Missing property \"Address\""_s)});
    ipv6("value no text", configured({{Address, QVariant::fromValue(QList<int>{1})}}), {unusable});
}

void IpConfigurationGettersTest::valueThatCannotBeHadIsEmptyAndSaysWhy()
{
    QFETCH(QVariantMap, properties);
    QFETCH(bool, isIpv6);
    QFETCH(QString, key);
    fill(properties);
    QCOMPARE(isIpv6 ? service().getIpv6ConfigurationValue(key) : service().getIpv4ConfigurationValue(key),
             QString());
    QTEST(complaints(), "lines");
}

static const Suite<IpConfigurationGettersTest> ipConfigurationGettersTest;
#include "IpConfigurationGettersTest.moc"
