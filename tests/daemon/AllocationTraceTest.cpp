#include "Suite.h"
#include "TestDevice.h"
#include "Text.h"
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace test_support;

/// The daemon can be asked for a trace of its allocations, from its very start.
class AllocationTraceTest : public QObject
{
    Q_OBJECT
private slots:
    void allocationsAreTracedWhereTheEnvironmentSays();
    void nothingIsTracedUnlessTheEnvironmentSaysWhere();
};

namespace {
// Where glibc keeps what mtrace() needs.
const QString tracer = "libc_malloc_debug.so.0"_s;
} // namespace

void AllocationTraceTest::allocationsAreTracedWhereTheEnvironmentSays()
{
    const QTemporaryDir directory;
    QFile trace(directory.filePath("trace"_s));
    LonelyDaemon device;
    device.daemon.setVariable("LD_PRELOAD"_s, tracer);
    device.daemon.setVariable("MALLOC_TRACE"_s, trace.fileName());
    QVERIFY(device.daemon.start({"--version"_s}));
    QCOMPARE(device.daemon.waitForExit(), 0);
    QVERIFY2(trace.open(QIODevice::ReadOnly), qPrintable(trace.errorString()));
    QVERIFY(trace.readAll().startsWith("= Start\n"));
}

void AllocationTraceTest::nothingIsTracedUnlessTheEnvironmentSaysWhere()
{
    LonelyDaemon device;
    device.daemon.setVariable("LD_PRELOAD"_s, tracer);
    QVERIFY(device.daemon.start({"--version"_s}));
    QCOMPARE(device.daemon.waitForExit(), 0);
    QCOMPARE(device.daemon.standardOutput(), QByteArray("network-manager 1.14.0\n"));
    QCOMPARE(device.daemon.log().lines(), QStringList());
}

static const Suite<AllocationTraceTest> allocationTraceTest;
#include "AllocationTraceTest.moc"
