#include "NetworkSettings.h"
#include "Suite.h"

#include <limits>
#include <QTest>

class MacAddressTest : public QObject
{
    Q_OBJECT

private slots:
    void addressIsDerivedFromTheSerialNumber_data();
    void addressIsDerivedFromTheSerialNumber();
};

void MacAddressTest::addressIsDerivedFromTheSerialNumber_data()
{
    QTest::addColumn<int>("serialNumber");
    QTest::addColumn<QString>("address");

    QTest::newRow("none known") << 0 << QStringLiteral("02:a7:c4:03:0d:40");
    QTest::newRow("first") << 1 << QStringLiteral("02:a7:c4:03:0d:41");
    QTest::newRow("hundred") << 100 << QStringLiteral("02:a7:c4:03:0d:a4");
    QTest::newRow("letters are lower case") << 503711 << QStringLiteral("02:a7:c4:0a:bc:df");
    QTest::newRow("last with five digits") << 848575 << QStringLiteral("02:a7:c4:0f:ff:ff");
    QTest::newRow("first with six digits") << 848576 << QStringLiteral("02:a7:c4:01:00:00:0");
    QTest::newRow("largest with six digits") << 16577215 << QStringLiteral("02:a7:c4:0f:ff:ff:f");
    QTest::newRow("first with seven digits") << 16577216 << QStringLiteral("02:a7:c4:01:00:00:00");
    QTest::newRow("largest") << std::numeric_limits<int>::max() << QStringLiteral("02:a7:c4:08:00:30:d3:f");
    QTest::newRow("minus one, sum with five digits") << -1 << QStringLiteral("02:a7:c4:03:0d:3f");
    QTest::newRow("sum with four digits") << -134465 << QStringLiteral("02:a7:c4:0f:ff:f");
    QTest::newRow("sum zero") << -200000 << QStringLiteral("02:a7:c4:00");
    QTest::newRow("sum negative") << -200001 << QStringLiteral("02:a7:c4:0f:ff:ff:ff:f");
    QTest::newRow("smallest") << std::numeric_limits<int>::min() << QStringLiteral("02:a7:c4:08:00:30:d4:0");
}

void MacAddressTest::addressIsDerivedFromTheSerialNumber()
{
    QFETCH(int, serialNumber);
    QTEST(NetworkSettings::macAddress(serialNumber), "address");
}

static const Suite<MacAddressTest> suite;
#include "MacAddressTest.moc"
