// How values are written, and in which order dictionaries are.

#include "ConnmanWire.h"
#include "DictKeys.h"
#include "GVariantText.h"
#include "Service.h"
#include "Suite.h"
#include "Text.h"
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTest>

using namespace simulator;

class ValueTextTest : public QObject
{
    Q_OBJECT

private slots:
    void valuesHaveATextForm_data();
    void valuesHaveATextForm();
    void argumentsAreSeparatedByCommas();
    void propertiesHaveConnmansOrder();
    void unknownPropertiesComeLast();
};

void ValueTextTest::valuesHaveATextForm_data()
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

void ValueTextTest::valuesHaveATextForm()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    QCOMPARE(toGVariantText(value), text);
}

void ValueTextTest::argumentsAreSeparatedByCommas()
{
    QCOMPARE(toGVariantText(QVariantList{1, "x"_s}), "1, \"x\""_s);
    QCOMPARE(toGVariantText(QVariantList()), QString());
}

void ValueTextTest::propertiesHaveConnmansOrder()
{
    QCOMPARE(keys(serviceDict(newServiceProperties("wifi_x_managed_psk"_s))).mid(0, 9),
             (QStringList{"Type"_s, "Security"_s, "State"_s, "Strength"_s, "Favorite"_s, "Immutable"_s,
                          "AutoConnect"_s, "Name"_s, "Ethernet"_s}));
}

void ValueTextTest::unknownPropertiesComeLast()
{
    QCOMPARE(keys(technologyDict({{"Alpha"_s, 1}, {"Type"_s, 1}, {"Name"_s, 1}})),
             (QStringList{"Name"_s, "Type"_s, "Alpha"_s}));
}

static const Suite<ValueTextTest> valueTextTest;
#include "ValueTextTest.moc"
