// The simulator's pure parts: text form of values, faults, credentials, what is around the device.

#include "ConnmanWire.h"
#include "Credentials.h"
#include "Faults.h"
#include "GVariantText.h"
#include "Neighbourhood.h"
#include "Service.h"
#include "Suite.h"
#include "Text.h"
#include "Timings.h"
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTest>

using namespace simulator;

namespace {
Call call(const char *path, const char *interface, const char *member)
{
    return {QDBusMessage::createMethodCall("a.name"_s, QString::fromLatin1(path),
                                           QString::fromLatin1(interface), QString::fromLatin1(member)),
            QString()};
}

Service service(const char *security)
{
    Service result("wifi_x"_s);
    result.properties = {{"Type"_s, "wifi"_s},
                         {"Name"_s, "x"_s},
                         {"Security"_s, QString::fromLatin1(security).split(QLatin1Char(' '))}};
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
    QTest::newRow("string") << QVariant("it's \"so\""_s) << "\"it's \\\"so\\\"\""_s;
    QTest::newRow("control") << QVariant("a\tb\x01"_s) << "\"a\\tb\\u0001\""_s;
    QTest::newRow("beyond ASCII") << QVariant(QString::fromUtf8("Café")) << QString::fromUtf8("\"Café\"");
    QTest::newRow("true") << QVariant(true) << "true"_s;
    QTest::newRow("int32") << QVariant(-5) << "-5"_s;
    QTest::newRow("uint32") << QVariant(5U) << "uint32 5"_s;
    QTest::newRow("int16") << QVariant::fromValue<short>(-5) << "int16 -5"_s;
    QTest::newRow("uint64") << QVariant(5ULL) << "uint64 5"_s;
    QTest::newRow("byte") << QVariant::fromValue<uchar>(5) << "byte 0x05"_s;
    QTest::newRow("double") << QVariant(2.0) << "2.0"_s;
    QTest::newRow("large double") << QVariant(1e300) << "1.0000000000000001e+300"_s;
    QTest::newRow("strings") << QVariant(QStringList{"a"_s, "b"_s}) << "[\"a\", \"b\"]"_s;
    QTest::newRow("no strings") << QVariant(QStringList()) << "@as []"_s;
    QTest::newRow("bytes") << QVariant(QByteArray("\x01\x02")) << "[byte 0x01, 0x02]"_s;
    QTest::newRow("no bytes") << QVariant(QByteArray()) << "@ay []"_s;
    QTest::newRow("map") << QVariant(QVariantMap{{"b"_s, 1}, {"a"_s, QVariantMap()}})
                         << "{\"a\": <@a{sv} {}>, \"b\": <1>}"_s;
    QTest::newRow("variant") << QVariant::fromValue(QDBusVariant(5U)) << "<uint32 5>"_s;
    QTest::newRow("path") << QVariant::fromValue(QDBusObjectPath("/a")) << "objectpath \"/a\""_s;
}

void SimulatorLogicTest::valuesHaveATextForm()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    QCOMPARE(toGVariantText(value), text);
}

void SimulatorLogicTest::argumentsAreSeparatedByCommas()
{
    QCOMPARE(toGVariantText(QVariantList{1, "x"_s}), "1, \"x\""_s);
    QCOMPARE(toGVariantText(QVariantList()), QString());
}

void SimulatorLogicTest::propertiesHaveConnmansOrder()
{
    QCOMPARE(keys(serviceDict(newServiceProperties("wifi_x_managed_psk"_s))).mid(0, 9),
             (QStringList{"Type"_s, "Security"_s, "State"_s, "Strength"_s, "Favorite"_s, "Immutable"_s,
                          "AutoConnect"_s, "Name"_s, "Ethernet"_s}));
}

void SimulatorLogicTest::unknownPropertiesComeLast()
{
    QCOMPARE(keys(technologyDict({{"Alpha"_s, 1}, {"Type"_s, 1}, {"Name"_s, 1}})),
             (QStringList{"Name"_s, "Type"_s, "Alpha"_s}));
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
    const uint id = faults.inject({"a.B"_s, "C"_s, "/a"_s}, 1, {});
    QCOMPARE(faults.take(call(path, interface, member)).has_value(), fires);
    QCOMPARE(faults.timesFired(id), fires ? 1U : 0U);
}

void SimulatorLogicTest::faultFiresAsOftenAsToldTo()
{
    Faults faults;
    const uint id = faults.inject({"a.B"_s, "C"_s, QString()}, 2, {});
    QVERIFY(faults.take(call("/a", "a.B", "C")).has_value());
    QVERIFY(faults.take(call("/b", "a.B", "C")).has_value());
    QVERIFY(!faults.take(call("/a", "a.B", "C")).has_value());
    QCOMPARE(faults.timesFired(id), 2U);
}

void SimulatorLogicTest::faultKindIsReadFromItsMap_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("kind");
    QTest::newRow("error") << "error"_s << static_cast<int>(Fault::Kind::Error);
    QTest::newRow("reply") << "reply"_s << static_cast<int>(Fault::Kind::Reply);
    QTest::newRow("delay") << "delay"_s << static_cast<int>(Fault::Kind::Delay);
    QTest::newRow("never") << "never"_s << static_cast<int>(Fault::Kind::Never);
    QTest::newRow("vanish") << "vanish"_s << static_cast<int>(Fault::Kind::Vanish);
}

void SimulatorLogicTest::faultKindIsReadFromItsMap()
{
    QFETCH(QString, name);
    QFETCH(int, kind);
    const std::optional<Fault> fault = Fault::fromMap({{"kind"_s, name},
                                                       {"name"_s, "a.B"_s},
                                                       {"message"_s, "text"_s},
                                                       {"milliseconds"_s, 7},
                                                       {"arguments"_s, QVariantList{1}}});
    QVERIFY(fault.has_value());
    QCOMPARE(static_cast<int>(fault->kind), kind);
    QCOMPARE(fault->error.name, "a.B"_s);
    QCOMPARE(fault->error.message, "text"_s);
    QCOMPARE(fault->milliseconds, 7);
    QCOMPARE(fault->arguments, QVariantList{1});
}

void SimulatorLogicTest::unknownFaultKindIsNone()
{
    QVERIFY(!Fault::fromMap({{"kind"_s, "explode"_s}}).has_value());
    QVERIFY(!Fault::fromMap({}).has_value());
}

void SimulatorLogicTest::passphraseIsUsable_data()
{
    QTest::addColumn<QString>("security");
    QTest::addColumn<QString>("passphrase");
    QTest::addColumn<bool>("isUsable");
    const auto text = [](int length, char character) { return QString(length, QLatin1Char(character)); };
    QTest::newRow("7") << "psk"_s << text(7, 'x') << false;
    QTest::newRow("8") << "psk"_s << text(8, 'x') << true;
    QTest::newRow("63") << "psk"_s << text(63, 'x') << true;
    QTest::newRow("64 hexadecimal") << "psk"_s << text(64, 'F') << true;
    QTest::newRow("64 others") << "psk"_s << text(64, 'x') << false;
    QTest::newRow("65") << "psk"_s << text(65, 'a') << false;
    QTest::newRow("4 of two bytes") << "psk"_s << QString(4, QChar(0xe9)) << true;
    QTest::newRow("enterprise") << "ieee8021x"_s << text(1, 'x') << true;
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
    QTest::newRow("8 digits") << "12345670"_s << true;
    QTest::newRow("7 digits") << "1234567"_s << false;
    QTest::newRow("8 letters") << "abcdefgh"_s << false;
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
        return QVariantMap{{"Security"_s, QStringList{QString::fromLatin1(security)}}};
    };
    const auto and_ = [](QVariantMap map, const char *key, const QVariant &value) {
        map[QString::fromLatin1(key)] = value;
        return map;
    };
    QTest::newRow("open") << secured("none") << QString() << false;
    QTest::newRow("psk") << secured("psk") << QString() << true;
    QTest::newRow("psk with passphrase") << secured("psk") << "12345678"_s << false;
    QTest::newRow("favourite") << and_(secured("psk"), "Favorite", true) << QString() << false;
    QTest::newRow("wrong before") << and_(secured("psk"), "Error", "invalid-key"_s) << "12345678"_s << true;
    QTest::newRow("enterprise without identity") << secured("ieee8021x") << "12345678"_s << true;
    QTest::newRow("wired") << and_(secured("psk"), "Type", "ethernet"_s) << QString() << false;
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
    hidden.properties.remove("Name"_s);
    hidden.passphrase = "tried before"_s;
    QCOMPARE(keys(requestedFields(hidden)),
             (QStringList{"Name"_s, "SSID"_s, "Passphrase"_s, "PreviousPassphrase"_s, "WPS"_s}));
}

void SimulatorLogicTest::identifierTellsNameAndSecurity_data()
{
    QTest::addColumn<QVariantMap>("options");
    QTest::addColumn<QString>("identifier");
    const QVariantMap home{{"ssid"_s, "Home"_s}};
    QTest::newRow("psk") << home << "wifi_020000000200_486f6d65_managed_psk"_s;
    QVariantMap options = home;
    options["security"_s] = "wps"_s;
    QTest::newRow("wps") << options << "wifi_020000000200_486f6d65_managed_psk"_s;
    options["security"_s] = "ieee8021x"_s;
    QTest::newRow("enterprise") << options << "wifi_020000000200_486f6d65_managed_ieee8021x"_s;
    options["hidden"_s] = true;
    QTest::newRow("hidden") << options << "wifi_020000000200_hidden_managed_ieee8021x"_s;
    QTest::newRow("beyond ASCII") << QVariantMap{{"ssid"_s, QString::fromUtf8("é")}}
                                  << "wifi_020000000200_c3a9_managed_psk"_s;
}

void SimulatorLogicTest::identifierTellsNameAndSecurity()
{
    QFETCH(QVariantMap, options);
    QFETCH(QString, identifier);
    QCOMPARE(accessPoint(options).scannedIdentifier("02:00:00:00:02:00"_s), identifier);
}

void SimulatorLogicTest::networkJudgesCredentials_data()
{
    QTest::addColumn<QString>("ssid");
    QTest::addColumn<QString>("passphrase");
    QTest::addColumn<QString>("pin");
    QTest::addColumn<int>("verdict");
    const QString right = "right"_s;
    const QString none;
    QTest::newRow("right") << "Home"_s << right << none << static_cast<int>(Verdict::Accepted);
    QTest::newRow("wrong") << "Home"_s
                           << "wrong"_s << none << static_cast<int>(Verdict::WrongPassphrase);
    QTest::newRow("right PIN") << "Home"_s << none << "1"_s << static_cast<int>(Verdict::Accepted);
    QTest::newRow("wrong PIN") << "Home"_s << none << "2"_s << static_cast<int>(Verdict::Refused);
    QTest::newRow("no access point") << "Elsewhere"_s
                                     << "any"_s << none << static_cast<int>(Verdict::Accepted);
}

void SimulatorLogicTest::networkJudgesCredentials()
{
    QFETCH(QString, ssid);
    QFETCH(QString, passphrase);
    QFETCH(QString, pin);
    QFETCH(int, verdict);
    Neighbourhood neighbourhood;
    neighbourhood.add(accessPoint(
        {{"ssid"_s, "Home"_s}, {"security"_s, "wps"_s}, {"passphrase"_s, "right"_s}, {"pin"_s, "1"_s}}));
    Service subject = service("psk wps");
    subject.ssid = ssid;
    subject.passphrase = passphrase;
    subject.pin = pin;
    subject.useWps = !pin.isEmpty();
    QCOMPARE(static_cast<int>(neighbourhood.verdict(subject)), verdict);
}

void SimulatorLogicTest::timingsAreSetByName()
{
    Timings timings;
    QVERIFY(timings.set("announce"_s, 7));
    QCOMPARE(timings.announce, 7);
    QVERIFY(!timings.set("nothing"_s, 7));
    QVERIFY(Timings::fast().scan < Timings().scan);
}

static const Suite<SimulatorLogicTest> suite;
#include "SimulatorLogicTest.moc"
