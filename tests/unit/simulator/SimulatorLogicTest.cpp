// The simulator's pure parts: text form of values, faults, credentials, what is around the device.

#include "ConnmanWire.h"
#include "Credentials.h"
#include "Faults.h"
#include "GVariantText.h"
#include "Service.h"
#include "Suite.h"
#include "Surroundings.h"
#include "Timings.h"
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTest>

using namespace simulator;

namespace {
Call call(const char *path, const char *interface, const char *member)
{
    return {QDBusMessage::createMethodCall(QStringLiteral("a.name"), QString::fromLatin1(path),
                                           QString::fromLatin1(interface), QString::fromLatin1(member)),
            QString()};
}

Service service(const char *security)
{
    Service result(QStringLiteral("wifi_x"));
    result.properties = {{QStringLiteral("Type"), QStringLiteral("wifi")},
                         {QStringLiteral("Name"), QStringLiteral("x")},
                         {QStringLiteral("Security"), QString::fromLatin1(security).split(QLatin1Char(' '))}};
    return result;
}

AccessPoint accessPoint(const QVariantMap &options)
{
    return AccessPoint::fromOptions(options, 0);
}

QStringList keys(const PropertyDict &dict)
{
    QStringList result;
    for (const auto &entry : dict.entries) {
        result.append(entry.first);
    }
    return result;
}
} // namespace

class SimulatorLogicTest : public QObject
{
    Q_OBJECT

private slots:
    void valuesHaveATextForm_data();
    void valuesHaveATextForm();
    void argumentsAreSeparatedByCommas();
    void propertiesHaveConnmansOrder();
    void unknownPropertiesComeLast();

    void faultFiresForItsCallOnly_data();
    void faultFiresForItsCallOnly();
    void faultFiresAsOftenAsToldTo();
    void faultKindIsReadFromItsMap_data();
    void faultKindIsReadFromItsMap();
    void unknownFaultKindIsNone();

    void passphraseIsUsable_data();
    void passphraseIsUsable();
    void pinIsUsable_data();
    void pinIsUsable();
    void credentialsAreNeeded_data();
    void credentialsAreNeeded();
    void fieldsComeInConnmansOrder();

    void identifierTellsNameAndSecurity_data();
    void identifierTellsNameAndSecurity();
    void networkJudgesCredentials_data();
    void networkJudgesCredentials();
    void timingsAreSetByName();
};

void SimulatorLogicTest::valuesHaveATextForm_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("string") << QVariant(QStringLiteral("it's \"so\""))
                            << QStringLiteral("\"it's \\\"so\\\"\"");
    QTest::newRow("control") << QVariant(QStringLiteral("a\tb\x01")) << QStringLiteral("\"a\\tb\\u0001\"");
    QTest::newRow("beyond ASCII") << QVariant(QString::fromUtf8("Café")) << QString::fromUtf8("\"Café\"");
    QTest::newRow("true") << QVariant(true) << QStringLiteral("true");
    QTest::newRow("int32") << QVariant(-5) << QStringLiteral("-5");
    QTest::newRow("uint32") << QVariant(5U) << QStringLiteral("uint32 5");
    QTest::newRow("int16") << QVariant::fromValue<short>(-5) << QStringLiteral("int16 -5");
    QTest::newRow("uint64") << QVariant(5ULL) << QStringLiteral("uint64 5");
    QTest::newRow("byte") << QVariant::fromValue<uchar>(5) << QStringLiteral("byte 0x05");
    QTest::newRow("double") << QVariant(2.0) << QStringLiteral("2.0");
    QTest::newRow("large double") << QVariant(1e300) << QStringLiteral("1.0000000000000001e+300");
    QTest::newRow("strings") << QVariant(QStringList{QStringLiteral("a"), QStringLiteral("b")})
                             << QStringLiteral("[\"a\", \"b\"]");
    QTest::newRow("no strings") << QVariant(QStringList()) << QStringLiteral("@as []");
    QTest::newRow("bytes") << QVariant(QByteArray("\x01\x02")) << QStringLiteral("[byte 0x01, 0x02]");
    QTest::newRow("no bytes") << QVariant(QByteArray()) << QStringLiteral("@ay []");
    QTest::newRow("map") << QVariant(
                                QVariantMap{{QStringLiteral("b"), 1}, {QStringLiteral("a"), QVariantMap()}})
                         << QStringLiteral("{\"a\": <@a{sv} {}>, \"b\": <1>}");
    QTest::newRow("variant") << QVariant::fromValue(QDBusVariant(5U)) << QStringLiteral("<uint32 5>");
    QTest::newRow("path") << QVariant::fromValue(QDBusObjectPath("/a"))
                          << QStringLiteral("objectpath \"/a\"");
}

void SimulatorLogicTest::valuesHaveATextForm()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    QCOMPARE(toGVariantText(value), text);
}

void SimulatorLogicTest::argumentsAreSeparatedByCommas()
{
    QCOMPARE(toGVariantText(QVariantList{1, QStringLiteral("x")}), QStringLiteral("1, \"x\""));
    QCOMPARE(toGVariantText(QVariantList()), QString());
}

void SimulatorLogicTest::propertiesHaveConnmansOrder()
{
    QCOMPARE(
        keys(serviceDict(newServiceProperties(QStringLiteral("wifi_x_managed_psk")))).mid(0, 9),
        (QStringList{QStringLiteral("Type"), QStringLiteral("Security"), QStringLiteral("State"),
                     QStringLiteral("Strength"), QStringLiteral("Favorite"), QStringLiteral("Immutable"),
                     QStringLiteral("AutoConnect"), QStringLiteral("Name"), QStringLiteral("Ethernet")}));
}

void SimulatorLogicTest::unknownPropertiesComeLast()
{
    QCOMPARE(keys(technologyDict(
                 {{QStringLiteral("Alpha"), 1}, {QStringLiteral("Type"), 1}, {QStringLiteral("Name"), 1}})),
             (QStringList{QStringLiteral("Name"), QStringLiteral("Type"), QStringLiteral("Alpha")}));
}

void SimulatorLogicTest::faultFiresForItsCallOnly_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("interface");
    QTest::addColumn<QByteArray>("member");
    QTest::addColumn<bool>("fires");
    QTest::newRow("its call") << QByteArray("/a") << QByteArray("a.B") << QByteArray("C") << true;
    QTest::newRow("other path") << QByteArray("/b") << QByteArray("a.B") << QByteArray("C") << false;
    QTest::newRow("other interface") << QByteArray("/a") << QByteArray("a.X") << QByteArray("C") << false;
    QTest::newRow("other member") << QByteArray("/a") << QByteArray("a.B") << QByteArray("X") << false;
}

void SimulatorLogicTest::faultFiresForItsCallOnly()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, interface);
    QFETCH(QByteArray, member);
    QFETCH(bool, fires);
    Faults faults;
    const uint id = faults.inject({QStringLiteral("a.B"), QStringLiteral("C"), QStringLiteral("/a")}, 1, {});
    QCOMPARE(faults.take(call(path, interface, member)).has_value(), fires);
    QCOMPARE(faults.timesFired(id), fires ? 1U : 0U);
}

void SimulatorLogicTest::faultFiresAsOftenAsToldTo()
{
    Faults faults;
    const uint id = faults.inject({QStringLiteral("a.B"), QStringLiteral("C"), QString()}, 2, {});
    QVERIFY(faults.take(call("/a", "a.B", "C")).has_value());
    QVERIFY(faults.take(call("/b", "a.B", "C")).has_value());
    QVERIFY(!faults.take(call("/a", "a.B", "C")).has_value());
    QCOMPARE(faults.timesFired(id), 2U);
}

void SimulatorLogicTest::faultKindIsReadFromItsMap_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("kind");
    QTest::newRow("error") << QStringLiteral("error") << static_cast<int>(Fault::Kind::Error);
    QTest::newRow("reply") << QStringLiteral("reply") << static_cast<int>(Fault::Kind::Reply);
    QTest::newRow("delay") << QStringLiteral("delay") << static_cast<int>(Fault::Kind::Delay);
    QTest::newRow("never") << QStringLiteral("never") << static_cast<int>(Fault::Kind::Never);
    QTest::newRow("vanish") << QStringLiteral("vanish") << static_cast<int>(Fault::Kind::Vanish);
}

void SimulatorLogicTest::faultKindIsReadFromItsMap()
{
    QFETCH(QString, name);
    QFETCH(int, kind);
    const std::optional<Fault> fault = Fault::fromMap({{QStringLiteral("kind"), name},
                                                       {QStringLiteral("name"), QStringLiteral("a.B")},
                                                       {QStringLiteral("message"), QStringLiteral("text")},
                                                       {QStringLiteral("milliseconds"), 7},
                                                       {QStringLiteral("arguments"), QVariantList{1}}});
    QVERIFY(fault.has_value());
    QCOMPARE(static_cast<int>(fault->kind), kind);
    QCOMPARE(fault->error.name, QStringLiteral("a.B"));
    QCOMPARE(fault->error.message, QStringLiteral("text"));
    QCOMPARE(fault->milliseconds, 7);
    QCOMPARE(fault->arguments, QVariantList{1});
}

void SimulatorLogicTest::unknownFaultKindIsNone()
{
    QVERIFY(!Fault::fromMap({{QStringLiteral("kind"), QStringLiteral("explode")}}).has_value());
    QVERIFY(!Fault::fromMap({}).has_value());
}

void SimulatorLogicTest::passphraseIsUsable_data()
{
    QTest::addColumn<QString>("security");
    QTest::addColumn<QString>("passphrase");
    QTest::addColumn<bool>("isUsable");
    const auto text = [](int length, char character) { return QString(length, QLatin1Char(character)); };
    QTest::newRow("7") << QStringLiteral("psk") << text(7, 'x') << false;
    QTest::newRow("8") << QStringLiteral("psk") << text(8, 'x') << true;
    QTest::newRow("63") << QStringLiteral("psk") << text(63, 'x') << true;
    QTest::newRow("64 hexadecimal") << QStringLiteral("psk") << text(64, 'F') << true;
    QTest::newRow("64 others") << QStringLiteral("psk") << text(64, 'x') << false;
    QTest::newRow("65") << QStringLiteral("psk") << text(65, 'a') << false;
    QTest::newRow("4 of two bytes") << QStringLiteral("psk") << QString(4, QChar(0xe9)) << true;
    QTest::newRow("enterprise") << QStringLiteral("ieee8021x") << text(1, 'x') << true;
}

void SimulatorLogicTest::passphraseIsUsable()
{
    QFETCH(QString, security);
    QFETCH(QString, passphrase);
    QFETCH(bool, isUsable);
    QCOMPARE(isUsablePassphrase(service(security.toLatin1()), passphrase), isUsable);
}

void SimulatorLogicTest::pinIsUsable_data()
{
    QTest::addColumn<QString>("pin");
    QTest::addColumn<bool>("isUsable");
    QTest::newRow("button") << QString() << true;
    QTest::newRow("8 digits") << QStringLiteral("12345670") << true;
    QTest::newRow("7 digits") << QStringLiteral("1234567") << false;
    QTest::newRow("8 letters") << QStringLiteral("abcdefgh") << false;
}

void SimulatorLogicTest::pinIsUsable()
{
    QFETCH(QString, pin);
    QFETCH(bool, isUsable);
    QCOMPARE(isUsablePin(pin), isUsable);
}

void SimulatorLogicTest::credentialsAreNeeded_data()
{
    QTest::addColumn<QVariantMap>("properties");
    QTest::addColumn<QString>("passphrase");
    QTest::addColumn<bool>("areNeeded");
    const auto secured = [](const char *security) {
        return QVariantMap{{QStringLiteral("Security"), QStringList{QString::fromLatin1(security)}}};
    };
    const auto and_ = [](QVariantMap map, const char *key, const QVariant &value) {
        map[QString::fromLatin1(key)] = value;
        return map;
    };
    QTest::newRow("open") << secured("none") << QString() << false;
    QTest::newRow("psk") << secured("psk") << QString() << true;
    QTest::newRow("psk with passphrase") << secured("psk") << QStringLiteral("12345678") << false;
    QTest::newRow("favourite") << and_(secured("psk"), "Favorite", true) << QString() << false;
    QTest::newRow("wrong before") << and_(secured("psk"), "Error", QStringLiteral("invalid-key"))
                                  << QStringLiteral("12345678") << true;
    QTest::newRow("enterprise without identity")
        << secured("ieee8021x") << QStringLiteral("12345678") << true;
    QTest::newRow("wired") << and_(secured("psk"), "Type", QStringLiteral("ethernet")) << QString() << false;
}

void SimulatorLogicTest::credentialsAreNeeded()
{
    QFETCH(QVariantMap, properties);
    QFETCH(QString, passphrase);
    QFETCH(bool, areNeeded);
    Service subject = service("none");
    for (auto property = properties.cbegin(); property != properties.cend(); ++property) {
        subject.properties.insert(property.key(), property.value());
    }
    subject.passphrase = passphrase;
    QCOMPARE(needsCredentials(subject), areNeeded);
}

void SimulatorLogicTest::fieldsComeInConnmansOrder()
{
    Service hidden = service("psk wps");
    hidden.properties.remove(QStringLiteral("Name"));
    hidden.passphrase = QStringLiteral("tried before");
    QCOMPARE(keys(requestedFields(hidden)),
             (QStringList{QStringLiteral("Name"), QStringLiteral("SSID"), QStringLiteral("Passphrase"),
                          QStringLiteral("PreviousPassphrase"), QStringLiteral("WPS")}));
}

void SimulatorLogicTest::identifierTellsNameAndSecurity_data()
{
    QTest::addColumn<QVariantMap>("options");
    QTest::addColumn<QString>("identifier");
    const QVariantMap home{{QStringLiteral("ssid"), QStringLiteral("Home")}};
    QTest::newRow("psk") << home << QStringLiteral("wifi_020000000200_486f6d65_managed_psk");
    QVariantMap options = home;
    options[QStringLiteral("security")] = QStringLiteral("wps");
    QTest::newRow("wps") << options << QStringLiteral("wifi_020000000200_486f6d65_managed_psk");
    options[QStringLiteral("security")] = QStringLiteral("ieee8021x");
    QTest::newRow("enterprise") << options << QStringLiteral("wifi_020000000200_486f6d65_managed_ieee8021x");
    options[QStringLiteral("hidden")] = true;
    QTest::newRow("hidden") << options << QStringLiteral("wifi_020000000200_hidden_managed_ieee8021x");
    QTest::newRow("beyond ASCII") << QVariantMap{{QStringLiteral("ssid"), QString::fromUtf8("é")}}
                                  << QStringLiteral("wifi_020000000200_c3a9_managed_psk");
}

void SimulatorLogicTest::identifierTellsNameAndSecurity()
{
    QFETCH(QVariantMap, options);
    QFETCH(QString, identifier);
    QCOMPARE(accessPoint(options).scannedIdentifier(QStringLiteral("02:00:00:00:02:00")), identifier);
}

void SimulatorLogicTest::networkJudgesCredentials_data()
{
    QTest::addColumn<QString>("ssid");
    QTest::addColumn<QString>("passphrase");
    QTest::addColumn<QString>("pin");
    QTest::addColumn<int>("verdict");
    const QString right = QStringLiteral("right");
    const QString none;
    QTest::newRow("right") << QStringLiteral("Home") << right << none << static_cast<int>(Verdict::Accepted);
    QTest::newRow("wrong") << QStringLiteral("Home") << QStringLiteral("wrong") << none
                           << static_cast<int>(Verdict::WrongPassphrase);
    QTest::newRow("right PIN") << QStringLiteral("Home") << none << QStringLiteral("1")
                               << static_cast<int>(Verdict::Accepted);
    QTest::newRow("wrong PIN") << QStringLiteral("Home") << none << QStringLiteral("2")
                               << static_cast<int>(Verdict::Refused);
    QTest::newRow("no access point") << QStringLiteral("Elsewhere") << QStringLiteral("any") << none
                                     << static_cast<int>(Verdict::Accepted);
}

void SimulatorLogicTest::networkJudgesCredentials()
{
    QFETCH(QString, ssid);
    QFETCH(QString, passphrase);
    QFETCH(QString, pin);
    QFETCH(int, verdict);
    Surroundings surroundings;
    surroundings.add(accessPoint({{QStringLiteral("ssid"), QStringLiteral("Home")},
                                  {QStringLiteral("security"), QStringLiteral("wps")},
                                  {QStringLiteral("passphrase"), QStringLiteral("right")},
                                  {QStringLiteral("pin"), QStringLiteral("1")}}));
    Service subject = service("psk wps");
    subject.ssid = ssid;
    subject.passphrase = passphrase;
    subject.pin = pin;
    subject.useWps = !pin.isEmpty();
    QCOMPARE(static_cast<int>(surroundings.verdict(subject)), verdict);
}

void SimulatorLogicTest::timingsAreSetByName()
{
    Timings timings;
    QVERIFY(timings.set(QStringLiteral("announce"), 7));
    QCOMPARE(timings.announce, 7);
    QVERIFY(!timings.set(QStringLiteral("nothing"), 7));
    QVERIFY(Timings::fast().scan < Timings().scan);
}

static const Suite<SimulatorLogicTest> suite;
#include "SimulatorLogicTest.moc"
