// What ConnMan asks the agent for, and which answers it would try.

#include "Credentials.h"
#include "DictKeys.h"
#include "Service.h"
#include "Suite.h"
#include "Text.h"
#include <QTest>

using namespace simulator;

namespace {
Service service(const char *security)
{
    Service result("wifi_x"_s);
    result.properties = {{"Type"_s, "wifi"_s},
                         {"Name"_s, "x"_s},
                         {"Security"_s, QString::fromLatin1(security).split(QLatin1Char(' '))}};
    return result;
}
} // namespace

class CredentialsTest : public QObject
{
    Q_OBJECT

private slots:
    void passphraseIsUsable_data();
    void passphraseIsUsable();
    void pinIsUsable_data();
    void pinIsUsable();
    void credentialsAreNeeded_data();
    void credentialsAreNeeded();
    void fieldsComeInConnmansOrder();
};

void CredentialsTest::passphraseIsUsable_data()
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

void CredentialsTest::passphraseIsUsable()
{
    QFETCH(QString, security);
    QFETCH(QString, passphrase);
    QFETCH(bool, isUsable);
    QCOMPARE(isUsablePassphrase(service(security.toLatin1()), passphrase), isUsable);
}

void CredentialsTest::pinIsUsable_data()
{
    QTest::addColumn<QString>("pin");
    QTest::addColumn<bool>("isUsable");
    QTest::newRow("button") << QString() << true;
    QTest::newRow("8 digits") << "12345670"_s << true;
    QTest::newRow("7 digits") << "1234567"_s << false;
    QTest::newRow("8 letters") << "abcdefgh"_s << false;
}

void CredentialsTest::pinIsUsable()
{
    QFETCH(QString, pin);
    QFETCH(bool, isUsable);
    QCOMPARE(isUsablePin(pin), isUsable);
}

void CredentialsTest::credentialsAreNeeded_data()
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

void CredentialsTest::credentialsAreNeeded()
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

void CredentialsTest::fieldsComeInConnmansOrder()
{
    Service hidden = service("psk wps");
    hidden.properties.remove("Name"_s);
    hidden.passphrase = "tried before"_s;
    QCOMPARE(keys(requestedFields(hidden)),
             (QStringList{"Name"_s, "SSID"_s, "Passphrase"_s, "PreviousPassphrase"_s, "WPS"_s}));
}

static const Suite<CredentialsTest> credentialsTest;
#include "CredentialsTest.moc"
