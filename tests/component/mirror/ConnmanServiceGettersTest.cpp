// The typed getters of ConnmanService over a cache of known content, well-formed and not. Every value has
// come over the bus.

#include "ConnmanService.h"
#include "MirrorWorld.h"
#include "OddValues.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

#include <memory>

using test_support::Fault;

namespace {

const QLatin1String PropertiesLog("ConnmanService.properties");
const QLatin1String Path("/net/connman/service/wifi_x_managed_psk");

using Getter = QVariant (*)(const ConnmanService &);

QVariant strength(const ConnmanService &service)
{
    return service.strength();
}

QVariant favorite(const ConnmanService &service)
{
    return service.isFavorite();
}

QVariant autoConnect(const ConnmanService &service)
{
    return service.getAutoConnect();
}

QVariant security(const ConnmanService &service)
{
    return service.security();
}

QVariant nameservers(const ConnmanService &service)
{
    QStringList texts;
    const QList<QHostAddress> servers = service.getNameservers();
    for (const QHostAddress &server : servers) {
        texts << server.toString();
    }
    return texts;
}

QVariant name(const ConnmanService &service)
{
    return service.name();
}

QVariant type(const ConnmanService &service)
{
    return service.type();
}

QVariant interface(const ConnmanService &service)
{
    return service.interface();
}

QVariant ipv6(const ConnmanService &service)
{
    return service.getIpv6Configuration();
}

/// A getter with its property and what it gives when the property is not there or no good.
struct GetterInfo
{
    Getter get;
    const char *key;
    QVariant fallback;
};

const QVector<GetterInfo> &getters()
{
    static const QVector<GetterInfo> all{
        {strength, "Strength", -1},
        {favorite, "Favorite", false},
        {autoConnect, "AutoConnect", false},
        {security, "Security", QStringList()},
        {nameservers, "Nameservers", QStringList()},
        {name, "Name", QString()},
        {type, "Type", QString()},
        {interface, "Ethernet", QString()},
        {ipv6, "IPv6.Configuration", QVariantMap()},
    };
    return all;
}

QString missing(const QString &key)
{
    return critical(PropertiesLog, "Missing property \"%1\" of service \"%2\""_s.arg(key, QString(Path)));
}

QString invalidType(const QString &key)
{
    return critical(PropertiesLog,
                    "Invalid type of property \"%1\" of service \"%2\""_s.arg(key, QString(Path)));
}

QString subProperty(const QString &complaint)
{
    return critical(PropertiesLog, "%1 sub-property Interface in property Ethernet of service \"%2\""_s.arg(
                                       complaint, QString(Path)));
}

QVariantMap ethernet(const QVariant &interfaceName)
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

class ConnmanServiceGettersTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

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
    void fill(const QVariantMap &properties);

    std::unique_ptr<MirrorWorld> m_world;
    std::unique_ptr<ConnmanService> m_service;
};

void ConnmanServiceGettersTest::initTestCase()
{
    m_world = std::make_unique<MirrorWorld>();
    m_service = std::make_unique<ConnmanService>(m_world->connection(), QDBusObjectPath(Path), nullptr);
}

void ConnmanServiceGettersTest::init()
{
    fill({});
}

void ConnmanServiceGettersTest::cleanupTestCase()
{
    m_service.reset();
    m_world.reset();
}

/// Makes `properties` the whole cache.
void ConnmanServiceGettersTest::fill(const QVariantMap &properties)
{
    {
        const Fault fault = m_world->answerGetProperties(properties);
        m_service->dbusUpdateProperties();
    }
    m_world->simulator().clearFaults();
    m_world->log().clear();
    QCOMPARE(m_service->properties().keys(), properties.keys());
}

void ConnmanServiceGettersTest::valueIsConverted_data()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QVariantMap>("properties");
    QTest::addColumn<QVariant>("expected");
    const auto row = [](const char *title, Getter getter, const char *key, const QVariant &value,
                        const QVariant &expected) {
        QTest::newRow(title) << getter << QVariantMap{{QLatin1String(key), value}} << expected;
    };
    const QStringList words{"psk"_s, "wps"_s};
    const QStringList addresses{"10.0.0.1"_s, "fe80::1"_s, "8.8.8.8"_s};
    const QString text = "Café"_s;

    row("strength, a byte as ConnMan sends it", strength, "Strength", QVariant::fromValue(uchar(61)), 61);
    row("strength 0", strength, "Strength", QVariant::fromValue(uchar(0)), 0);
    row("strength, an int", strength, "Strength", 61, 61);
    row("strength, digits", strength, "Strength", "61"_s, 61);
    row("favorite", favorite, "Favorite", true, true);
    row("not favorite", favorite, "Favorite", false, false);
    row("favorite, a number", favorite, "Favorite", 1, true);
    row("auto-connect", autoConnect, "AutoConnect", true, true);
    row("no auto-connect", autoConnect, "AutoConnect", false, false);
    row("security", security, "Security", words, words);
    row("no security", security, "Security", QStringList(), QStringList());
    row("security, a text", security, "Security", "psk"_s, QStringList{"psk"_s});
    row("name servers in order", nameservers, "Nameservers", addresses, addresses);
    row("no name servers", nameservers, "Nameservers", QStringList(), QStringList());
    row("name server that is no address", nameservers, "Nameservers", QStringList{text},
        QStringList{QString()});
    row("name", name, "Name", text, text);
    row("empty name", name, "Name", QString(), QString());
    row("name, a number", name, "Name", 7, "7"_s);
    row("type", type, "Type", "wifi"_s, "wifi"_s);
    QTest::newRow("interface") << Getter(interface) << ethernet("wlan0"_s) << QVariant("wlan0"_s);
    QTest::newRow("empty interface") << Getter(interface) << ethernet(QString()) << QVariant(QString());
}

void ConnmanServiceGettersTest::valueIsConverted()
{
    QFETCH(Getter, getter);
    QFETCH(QVariantMap, properties);
    QFETCH(QVariant, expected);
    fill(properties);
    QCOMPARE(getter(*m_service), expected);
    QCOMPARE(m_world->complaints(), QStringList());
}

void ConnmanServiceGettersTest::missingPropertyIsOneLineAndTheFallback_data()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("fallback");
    for (const GetterInfo &info : getters()) {
        if (info.get != name) {
            QTest::newRow(info.key) << info.get << QString(QLatin1String(info.key)) << info.fallback;
        }
    }
}

void ConnmanServiceGettersTest::missingPropertyIsOneLineAndTheFallback()
{
    QFETCH(Getter, getter);
    QFETCH(QString, key);
    QFETCH(QVariant, fallback);
    QCOMPARE(getter(*m_service), fallback);
    QCOMPARE(m_world->complaints(), {missing(key)});
}

// Hidden networks have none.
void ConnmanServiceGettersTest::missingNameIsSilentlyEmpty()
{
    QCOMPARE(m_service->name(), QString());
    QCOMPARE(m_world->complaints(), QStringList());
}

void ConnmanServiceGettersTest::valueOfNoUseIsOneLineAndTheFallback_data()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("fallback");
    const auto row = [](const GetterInfo &info, const char *shape, int number, const QVariant &value) {
        QTest::addRow("%s as %s, %d", info.key, shape, number)
            << info.get << QString(QLatin1String(info.key)) << value << info.fallback;
    };
    const QVector<OddValue> odd = valuesOfNoUse();
    for (const GetterInfo &info : getters()) {
        for (int i = 0; i < odd.size(); ++i) {
            row(info, odd[i].signature, i, odd[i].value);
        }
        const bool wantsDictionary = info.get == interface || info.get == ipv6;
        if (wantsDictionary) {
            row(info, "text", 0, "wlan0"_s);
            row(info, "number", 0, 7);
            row(info, "list of texts", 0, QStringList{"wlan0"_s});
        } else {
            row(info, "dictionary", 0, QVariantMap{{"Method"_s, "dhcp"_s}});
            row(info, "dictionary", 1, QVariantMap());
        }
    }
    const GetterInfo &strengthInfo = getters().constFirst();
    row(strengthInfo, "list of texts", 0, QStringList{"61"_s});
}

void ConnmanServiceGettersTest::valueOfNoUseIsOneLineAndTheFallback()
{
    QFETCH(Getter, getter);
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QFETCH(QVariant, fallback);
    fill({{key, value}});
    QCOMPARE(getter(*m_service), fallback);
    QCOMPARE(m_world->complaints(), {invalidType(key)});
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
    QCOMPARE(m_service->strength(), -1);
    QCOMPARE(m_world->complaints(),
             {critical(PropertiesLog, "Unable to convert value for Strength to integer for service "
                                      "\"%1\""_s.arg(QString(Path)))});
}

void ConnmanServiceGettersTest::missingInterfaceEntryIsOneLineAndEmpty()
{
    fill({{"Ethernet"_s, QVariantMap{{"MTU"_s, 1500}}}});
    QCOMPARE(m_service->interface(), QString());
    QCOMPARE(m_world->complaints(), {subProperty("Missing"_s)});

    fill({{"Ethernet"_s, QVariantMap()}});
    QCOMPARE(m_service->interface(), QString());
    QCOMPARE(m_world->complaints(), {subProperty("Missing"_s)});
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
    fill(ethernet(value));
    QCOMPARE(m_service->interface(), QString());
    QCOMPARE(m_world->complaints(), {subProperty("Invalid type of"_s)});
}

static const Suite<ConnmanServiceGettersTest> suite;
#include "ConnmanServiceGettersTest.moc"
