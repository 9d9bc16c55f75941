// The typed getters of ConnmanService over a cache of known content, well-formed and not.

#include "CachedServiceFixture.h"
#include "OddValues.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

namespace {

/// A getter of a property, and what it gives when the property is not there or no good.
struct Getter
{
    const char *key = nullptr;
    QVariant (*get)(const ConnmanService &) = nullptr;
    QVariant fallback;
};

QVariant nameservers(const ConnmanService &service)
{
    QStringList texts;
    const QList<QHostAddress> servers = service.getNameservers();
    for (const QHostAddress &server : servers) {
        texts << server.toString();
    }
    return texts;
}

const Getter strength{"Strength", [](const ConnmanService &of) { return QVariant(of.strength()); }, -1};
const Getter favorite{"Favorite", [](const ConnmanService &of) { return QVariant(of.isFavorite()); }, false};
const Getter autoConnect{"AutoConnect",
                         [](const ConnmanService &of) { return QVariant(of.getAutoConnect()); }, false};
const Getter security{"Security", [](const ConnmanService &of) { return QVariant(of.security()); },
                      QStringList()};
const Getter nameserver{"Nameservers", nameservers, QStringList()};
const Getter name{"Name", [](const ConnmanService &of) { return QVariant(of.name()); }, QString()};
const Getter type{"Type", [](const ConnmanService &of) { return QVariant(of.type()); }, QString()};
const Getter interface {
    "Ethernet", [](const ConnmanService &of) { return QVariant(of.interface()); }, QString()
};
const Getter ipv6{"IPv6.Configuration",
                  [](const ConnmanService &of) { return QVariant(of.getIpv6Configuration()); },
                  QVariantMap()};

QVariantMap onEthernet(const QVariant &interfaceName)
{
    return {{"Ethernet"_s, QVariantMap{{"Interface"_s, interfaceName}}}};
}

/// What can be none of: a number, a boolean, a text, a list of texts, a dictionary.
QVector<OddValue> valuesOfNoUse()
{
    QVector<OddValue> values = rawOddValues();
    values.append({"o", QVariant::fromValue(QDBusObjectPath("/x"_s))});
    values.append({"v", QVariant::fromValue(QDBusVariant("text"_s))});
    return values;
}

} // namespace

Q_DECLARE_METATYPE(Getter)

class ConnmanServiceGettersTest : public CachedServiceFixture
{
    Q_OBJECT

private slots:
    void valueIsConverted_data();
    void valueIsConverted();
    void missingPropertyIsOneLineAndTheFallback_data();
    void missingPropertyIsOneLineAndTheFallback();
    void missingNameIsSilentlyEmpty();
    void valueOfNoUseIsOneLineAndTheFallback_data();
    void valueOfNoUseIsOneLineAndTheFallback();
    void strengthThatIsNoNumberIsOneLineAndUnknown_data();
    void strengthThatIsNoNumberIsOneLineAndUnknown();
    void missingInterfaceEntryIsOneLineAndEmpty();
    void interfaceEntryOfNoUseIsOneLineAndEmpty_data();
    void interfaceEntryOfNoUseIsOneLineAndEmpty();

private:
    static QString subProperty(const QString &complaint);
};

QString ConnmanServiceGettersTest::subProperty(const QString &complaint)
{
    return line("%1 sub-property Interface in property Ethernet of service \"%2\""_s.arg(complaint, path()));
}

void ConnmanServiceGettersTest::valueIsConverted_data()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QVariantMap>("properties");
    QTest::addColumn<QVariant>("expected");
    const auto row = [](const char *title, const Getter &getter, const QVariant &value,
                        const QVariant &expected) {
        QTest::newRow(title) << getter << QVariantMap{{QLatin1String(getter.key), value}} << expected;
    };
    const QStringList words{"psk"_s, "wps"_s};
    const QStringList addresses{"10.0.0.1"_s, "fe80::1"_s, "8.8.8.8"_s};
    const QString text = "Café"_s;

    row("strength, a byte as ConnMan sends it", strength, QVariant::fromValue(uchar(61)), 61);
    row("strength 0", strength, QVariant::fromValue(uchar(0)), 0);
    row("strength, an int", strength, 61, 61);
    row("strength, digits", strength, "61"_s, 61);
    row("favorite", favorite, true, true);
    row("not favorite", favorite, false, false);
    row("favorite, a number", favorite, 1, true);
    row("auto-connect", autoConnect, true, true);
    row("no auto-connect", autoConnect, false, false);
    row("security", security, words, words);
    row("no security", security, QStringList(), QStringList());
    row("security, a text", security, "psk"_s, QStringList{"psk"_s});
    row("name servers in order", nameserver, addresses, addresses);
    row("no name servers", nameserver, QStringList(), QStringList());
    row("name server that is no address", nameserver, QStringList{text}, QStringList{QString()});
    row("name", name, text, text);
    row("empty name", name, QString(), QString());
    row("name, a number", name, 7, "7"_s);
    row("type", type, "wifi"_s, "wifi"_s);
    QTest::newRow("interface") << interface << onEthernet("wlan0"_s) << QVariant("wlan0"_s);
    QTest::newRow("empty interface") << interface << onEthernet(QString()) << QVariant(QString());
}

void ConnmanServiceGettersTest::valueIsConverted()
{
    QFETCH(Getter, getter);
    QFETCH(QVariantMap, properties);
    QFETCH(QVariant, expected);
    fill(properties);
    QCOMPARE(getter.get(service()), expected);
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceGettersTest::missingPropertyIsOneLineAndTheFallback_data()
{
    QTest::addColumn<Getter>("getter");
    for (const Getter &getter :
         {strength, favorite, autoConnect, security, nameserver, type, interface, ipv6}) {
        QTest::newRow(getter.key) << getter;
    }
}

void ConnmanServiceGettersTest::missingPropertyIsOneLineAndTheFallback()
{
    QFETCH(Getter, getter);
    QCOMPARE(getter.get(service()), getter.fallback);
    QCOMPARE(complaints(), {missing(QLatin1String(getter.key))});
}

// Hidden networks have none.
void ConnmanServiceGettersTest::missingNameIsSilentlyEmpty()
{
    QCOMPARE(service().name(), QString());
    QCOMPARE(complaints(), QStringList());
}

void ConnmanServiceGettersTest::valueOfNoUseIsOneLineAndTheFallback_data()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const Getter &getter, const char *shape, int number, const QVariant &value) {
        QTest::addRow("%s as %s, %d", getter.key, shape, number) << getter << value;
    };
    const QVector<OddValue> odd = valuesOfNoUse();
    for (const Getter &getter :
         {strength, favorite, autoConnect, security, nameserver, name, type, interface, ipv6}) {
        for (int i = 0; i < odd.size(); ++i) {
            row(getter, odd[i].signature, i, odd[i].value);
        }
    }
    for (const Getter &getter : {interface, ipv6}) {
        row(getter, "text", 0, "wlan0"_s);
        row(getter, "number", 0, 7);
        row(getter, "list of texts", 0, QStringList{"wlan0"_s});
    }
    for (const Getter &getter : {strength, favorite, autoConnect, security, nameserver, name, type}) {
        row(getter, "dictionary", 0, QVariantMap{{"Method"_s, "dhcp"_s}});
        row(getter, "dictionary", 1, QVariantMap());
    }
    row(strength, "list of texts", 0, QStringList{"61"_s});
}

void ConnmanServiceGettersTest::valueOfNoUseIsOneLineAndTheFallback()
{
    QFETCH(Getter, getter);
    QFETCH(QVariant, value);
    const QLatin1String key(getter.key);
    fill({{key, value}});
    QCOMPARE(getter.get(service()), getter.fallback);
    QCOMPARE(complaints(), {invalidType(key)});
}

void ConnmanServiceGettersTest::strengthThatIsNoNumberIsOneLineAndUnknown_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("word") << "strong"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("fraction") << "6.1"_s;
}

void ConnmanServiceGettersTest::strengthThatIsNoNumberIsOneLineAndUnknown()
{
    QFETCH(QString, text);
    fill({{"Strength"_s, text}});
    QCOMPARE(service().strength(), -1);
    QCOMPARE(complaints(),
             {line("Unable to convert value for Strength to integer for service \"%1\""_s.arg(path()))});
}

void ConnmanServiceGettersTest::missingInterfaceEntryIsOneLineAndEmpty()
{
    fill({{"Ethernet"_s, QVariantMap{{"MTU"_s, 1500}}}});
    QCOMPARE(service().interface(), QString());
    QCOMPARE(complaints(), {subProperty("Missing"_s)});

    fill({{"Ethernet"_s, QVariantMap()}});
    QCOMPARE(service().interface(), QString());
    QCOMPARE(complaints(), {subProperty("Missing"_s)});
}

void ConnmanServiceGettersTest::interfaceEntryOfNoUseIsOneLineAndEmpty_data()
{
    QTest::addColumn<QVariant>("value");
    const QVector<OddValue> odd = valuesOfNoUse();
    for (int i = 0; i < odd.size(); ++i) {
        QTest::addRow("%d %s", i, odd[i].signature) << odd[i].value;
    }
    // The second level stays as it came: a dictionary there is a raw argument.
    QTest::newRow("dictionary") << QVariant(QVariantMap{{"Name"_s, "wlan0"_s}});
}

void ConnmanServiceGettersTest::interfaceEntryOfNoUseIsOneLineAndEmpty()
{
    QFETCH(QVariant, value);
    fill(onEthernet(value));
    QCOMPARE(service().interface(), QString());
    QCOMPARE(complaints(), {subProperty("Invalid type of"_s)});
}

static const Suite<ConnmanServiceGettersTest> connmanServiceGettersTest;
#include "ConnmanServiceGettersTest.moc"
