#include "NetworkSettings.h"
#include "Suite.h"
#include "Text.h"

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

    QTest::newRow("none known") << 0 << "02:a7:c4:03:0d:40"_s;
    QTest::newRow("first") << 1 << "02:a7:c4:03:0d:41"_s;
    QTest::newRow("hundred") << 100 << "02:a7:c4:03:0d:a4"_s;
    QTest::newRow("letters are lower case") << 503711 << "02:a7:c4:0a:bc:df"_s;
    QTest::newRow("last with five digits") << 848575 << "02:a7:c4:0f:ff:ff"_s;
    QTest::newRow("first with six digits") << 848576 << "02:a7:c4:01:00:00:0"_s;
    QTest::newRow("largest with six digits") << 16577215 << "02:a7:c4:0f:ff:ff:f"_s;
    QTest::newRow("first with seven digits") << 16577216 << "02:a7:c4:01:00:00:00"_s;
    QTest::newRow("largest") << std::numeric_limits<int>::max() << "02:a7:c4:08:00:30:d3:f"_s;
    QTest::newRow("minus one, sum with five digits") << -1 << "02:a7:c4:03:0d:3f"_s;
    QTest::newRow("sum with four digits") << -134465 << "02:a7:c4:0f:ff:f"_s;
    QTest::newRow("sum zero") << -200000 << "02:a7:c4:00"_s;
    QTest::newRow("sum negative") << -200001 << "02:a7:c4:0f:ff:ff:ff:f"_s;
    QTest::newRow("smallest") << std::numeric_limits<int>::min() << "02:a7:c4:08:00:30:d4:0"_s;
}

void MacAddressTest::addressIsDerivedFromTheSerialNumber()
{
    QFETCH(int, serialNumber);
    QTEST(NetworkSettings::macAddress(serialNumber), "address");
}

static const Suite<MacAddressTest> macAddressTest;
#include "MacAddressTest.moc"
