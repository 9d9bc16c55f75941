#include "ConnmanAgent.h"
#include "ConnmanAgentDBus.h"
#include "LogCapture.h"
#include "Suite.h"

#include <QTest>

/// In a program of its own, because Qt keeps its first connection to the system bus.
class AgentWithoutBusTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere/at/all"); }
    void missingSystemBusIsOneCriticalLine();
};

void AgentWithoutBusTest::missingSystemBusIsOneCriticalLine()
{
    test_support::LogCapture log;
    ConnmanAgent agent(nullptr);
    const ConnmanAgentDBus adaptor(&agent);

    QCOMPARE(log.lines(QStringLiteral("default"), QtCriticalMsg),
             QStringList(QStringLiteral("Unable to connect to system-bus.")));
    QCOMPARE(adaptor.path().path(), QStringLiteral("/agent"));
}

static const Suite<AgentWithoutBusTest> suite;
#include "AgentWithoutBusTest.moc"
