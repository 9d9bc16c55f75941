// The client of the configuration manager where there is no system bus at all: a process of its own, because
// Qt keeps its connection to the system bus for the life of the process.

#include <dbus/SystemInfo.h>

#include "LogCapture.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

using detail::SystemInfo;
using test_support::LogCapture;

class SystemInfoWithoutBusTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void serialNumberIsTwoLinesAndZero();
};

void SystemInfoWithoutBusTest::initTestCase()
{
    QVERIFY(qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus"));
}

void SystemInfoWithoutBusTest::serialNumberIsTwoLinesAndZero()
{
    const LogCapture log;
    const SystemInfo info;
    QCOMPARE(info.serialNumber(), 0);
    const QStringList expected{
        "Critical error! \"com.tactora.ConfigurationManager\" interface is not valid."_s,
        "SystemInfo::process ERROR: interface is not valid."_s};
    QCOMPARE(log.lines("default"_s, QtCriticalMsg), expected);
}

static const Suite<SystemInfoWithoutBusTest> systemInfoWithoutBusTest;
#include "SystemInfoWithoutBusTest.moc"
