#include "Utils.h"
#include "LogCapture.h"
#include "Loopback.h"
#include "OddValues.h"
#include "Suite.h"
#include "Text.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusVariant>
#include <QLoggingCategory>
#include <QTest>

using test_support::LogCapture;

namespace {

QString unknownTypeLine(int typeId)
{
    return "Unknown QVariant::UserType: %1"_s.arg(typeId);
}

QString signatureOf(const QVariant &raw)
{
    return raw.value<QDBusArgument>().currentSignature();
}

} // namespace

class UtilsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void plainValueComesBackUnchanged_data();
    void plainValueComesBackUnchanged();
    void plainValueOffTheBusComesBackUnchanged_data();
    void plainValueOffTheBusComesBackUnchanged();
    void dictionaryBecomesAMapOfPlainValues();
    void emptyDictionaryBecomesAnEmptyMap();
    void entriesOfADictionaryKeepTheirTypes();
    void dictionaryInsideADictionaryStaysRawUntilConvertedItself();
    void laterEntryOfARepeatedKeyWins();
    void convertingTheSameArgumentTwiceGivesTheSameMap();
    void rawArgumentOfAnotherShapeComesBackUntouched_data();
    void rawArgumentOfAnotherShapeComesBackUntouched();

    void otherUserTypeComesBackUnchangedWithOneWarning_data();
    void otherUserTypeComesBackUnchangedWithOneWarning();
    void variantInsideAVariantComesBackUnchangedWithOneWarning();
    void warningIsOffUnlessAskedFor();

    void rawDictionaryReadsOnlyRawDictionaries();

private:
    Loopback m_loopback;
};

void UtilsTest::initTestCase()
{
    registerOddTypes();
}

void UtilsTest::init()
{
    QLoggingCategory::setFilterRules("Utils=true"_s);
}

void UtilsTest::plainValueComesBackUnchanged_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("string") << QVariant("ready"_s);
    QTest::newRow("empty string") << QVariant(QString());
    QTest::newRow("int") << QVariant(-5);
    QTest::newRow("unsigned int") << QVariant(5U);
    QTest::newRow("64 bits") << QVariant(Q_INT64_C(1) << 40);
    QTest::newRow("16 bits") << QVariant::fromValue(short(-3));
    QTest::newRow("byte") << QVariant::fromValue(uchar(61));
    QTest::newRow("double") << QVariant(0.5);
    QTest::newRow("true") << QVariant(true);
    QTest::newRow("false") << QVariant(false);
    QTest::newRow("string list") << QVariant(QStringList{"psk"_s, "wps"_s});
    QTest::newRow("empty string list") << QVariant(QStringList());
    QTest::newRow("bytes") << QVariant(QByteArray("\0\xff", 2));
    QTest::newRow("map") << QVariant(QVariantMap{{"Method"_s, "dhcp"_s}});
    QTest::newRow("nothing") << QVariant();
}

void UtilsTest::plainValueComesBackUnchanged()
{
    QFETCH(QVariant, value);
    const LogCapture log;
    const QVariant converted = Utils::convertDBusArgument(value);
    QCOMPARE(converted.userType(), value.userType());
    QCOMPARE(converted, value);
    QVERIFY(log.messages().isEmpty());
}

void UtilsTest::plainValueOffTheBusComesBackUnchanged_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("string") << QVariant("ready"_s);
    QTest::newRow("int") << QVariant(-5);
    QTest::newRow("byte") << QVariant::fromValue(uchar(61));
    QTest::newRow("boolean") << QVariant(true);
    QTest::newRow("string list") << QVariant(QStringList{"psk"_s, "wps"_s});
    QTest::newRow("empty string list") << QVariant(QStringList());
    QTest::newRow("bytes") << QVariant(QByteArray("\0\xff", 2));
}

void UtilsTest::plainValueOffTheBusComesBackUnchanged()
{
    QFETCH(QVariant, value);
    const QVariant received = m_loopback.variantContent(value);
    const LogCapture log;
    const QVariant converted = Utils::convertDBusArgument(received);
    QCOMPARE(converted.userType(), value.userType());
    QCOMPARE(converted, value);
    QVERIFY(log.messages().isEmpty());
}

void UtilsTest::dictionaryBecomesAMapOfPlainValues()
{
    const QVariantMap sent{{"Method"_s, "dhcp"_s}, {"Address"_s, "10.0.0.2"_s}};
    const QVariant received = m_loopback.variantContent(sent);
    QCOMPARE(signatureOf(received), "a{sv}"_s);

    const LogCapture log;
    const QVariant converted = Utils::convertDBusArgument(received);
    QCOMPARE(converted.userType(), int(QMetaType::QVariantMap));
    QCOMPARE(converted.toMap(), sent);
    QVERIFY(log.messages().isEmpty());
}

void UtilsTest::emptyDictionaryBecomesAnEmptyMap()
{
    const QVariant converted = Utils::convertDBusArgument(m_loopback.variantContent(QVariantMap()));
    QCOMPARE(converted.userType(), int(QMetaType::QVariantMap));
    QVERIFY(converted.toMap().isEmpty());
}

void UtilsTest::entriesOfADictionaryKeepTheirTypes()
{
    const QVariantMap sent{{"PrefixLength"_s, QVariant::fromValue(uchar(64))},
                           {"Secure"_s, true},
                           {"Servers"_s, QStringList{"10.0.0.1"_s}}};
    const QVariantMap converted = Utils::convertDBusArgument(m_loopback.variantContent(sent)).toMap();
    QCOMPARE(converted, sent);
    QCOMPARE(converted.value("PrefixLength"_s).userType(), int(QMetaType::UChar));
    QCOMPARE(converted.value("Secure"_s).userType(), int(QMetaType::Bool));
    QCOMPARE(converted.value("Servers"_s).userType(), int(QMetaType::QStringList));
}

void UtilsTest::dictionaryInsideADictionaryStaysRawUntilConvertedItself()
{
    const QVariantMap inner{{"Interface"_s, "wlan0"_s}};
    const QVariant received = m_loopback.variantContent(QVariantMap{{"Inner"_s, inner}});

    const LogCapture log;
    const QVariant nested = Utils::convertDBusArgument(received).toMap().value("Inner"_s);
    QCOMPARE(nested.userType(), qMetaTypeId<QDBusArgument>());
    QCOMPARE(Utils::convertDBusArgument(nested).toMap(), inner);
    QVERIFY(log.messages().isEmpty());
}

void UtilsTest::laterEntryOfARepeatedKeyWins()
{
    const RepeatedKey sent{"Method"_s, "dhcp"_s, "manual"_s};
    const QVariant received = m_loopback.variantContent(QVariant::fromValue(sent));
    QCOMPARE(signatureOf(received), "a{sv}"_s);
    const QVariantMap expected{{"Method"_s, "manual"_s}};
    QCOMPARE(Utils::convertDBusArgument(received).toMap(), expected);
}

// A cached value may be converted by more than one caller; reading one copy must not use up the other.
void UtilsTest::convertingTheSameArgumentTwiceGivesTheSameMap()
{
    const QVariantMap sent{{"Method"_s, "dhcp"_s}};
    const QVariant received = m_loopback.variantContent(sent);
    QCOMPARE(Utils::convertDBusArgument(received).toMap(), sent);
    QCOMPARE(Utils::convertDBusArgument(received).toMap(), sent);
}

void UtilsTest::rawArgumentOfAnotherShapeComesBackUntouched_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("signature");
    const QVector<OddValue> values = rawOddValues();
    for (int i = 0; i < values.size(); ++i) {
        QTest::addRow("%d %s", i, values[i].signature)
            << values[i].value << QString(QLatin1String(values[i].signature));
    }
}

void UtilsTest::rawArgumentOfAnotherShapeComesBackUntouched()
{
    QFETCH(QVariant, value);
    QFETCH(QString, signature);
    const QVariant received = m_loopback.variantContent(value);
    QCOMPARE(signatureOf(received), signature);

    const LogCapture log;
    const QVariant converted = Utils::convertDBusArgument(received);
    QCOMPARE(converted.userType(), qMetaTypeId<QDBusArgument>());
    // Still unread: it stands where it stood.
    QCOMPARE(signatureOf(converted), signature);
    QVERIFY(log.messages().isEmpty());
}

void UtilsTest::otherUserTypeComesBackUnchangedWithOneWarning_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("variant") << QVariant::fromValue(QDBusVariant("ready"_s));
    QTest::newRow("object path") << QVariant::fromValue(QDBusObjectPath("/agent"_s));
    QTest::newRow("signature") << QVariant::fromValue(QDBusSignature("a{sv}"_s));
}

void UtilsTest::otherUserTypeComesBackUnchangedWithOneWarning()
{
    QFETCH(QVariant, value);
    const LogCapture log;
    const QVariant converted = Utils::convertDBusArgument(value);
    QCOMPARE(converted.userType(), value.userType());
    QCOMPARE(converted, value);
    QCOMPARE(log.messages().size(), 1);
    QCOMPARE(log.lines("Utils"_s, QtWarningMsg), {unknownTypeLine(value.userType())});
}

void UtilsTest::variantInsideAVariantComesBackUnchangedWithOneWarning()
{
    const QVariant inner = QVariant::fromValue(QDBusVariant("ready"_s));
    const QVariant received = m_loopback.variantContent(inner);
    const LogCapture log;
    const QVariant converted = Utils::convertDBusArgument(received);
    QCOMPARE(converted.value<QDBusVariant>().variant(), QVariant("ready"_s));
    QCOMPARE(log.messages().size(), 1);
    QCOMPARE(log.lines("Utils"_s, QtWarningMsg), {unknownTypeLine(qMetaTypeId<QDBusVariant>())});
}

void UtilsTest::warningIsOffUnlessAskedFor()
{
    QLoggingCategory::setFilterRules({});
    const LogCapture log;
    Utils::convertDBusArgument(QVariant::fromValue(QDBusVariant("ready"_s)));
    QVERIFY(log.messages().isEmpty());
}

void UtilsTest::rawDictionaryReadsOnlyRawDictionaries()
{
    const QVariantMap map{{"Method"_s, "dhcp"_s}};
    const auto dictionary = Utils::rawDictionary(m_loopback.variantContent(map));
    QVERIFY(dictionary.has_value());
    QCOMPARE(*dictionary, map);

    QVERIFY(!Utils::rawDictionary(map).has_value());
    QVERIFY(!Utils::rawDictionary("text"_s).has_value());
    QVERIFY(!Utils::rawDictionary({}).has_value());
    const QVector<OddValue> oddValues = rawOddValues();
    for (const OddValue &odd : oddValues) {
        QVERIFY2(!Utils::rawDictionary(m_loopback.variantContent(odd.value)).has_value(), odd.signature);
    }
}

static const Suite<UtilsTest> utilsTest;
#include "UtilsTest.moc"
