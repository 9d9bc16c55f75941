#include "ConnmanAgent.h"
#include "ConnmanAgentDBus.h"
#include "LogCapture.h"
#include "Suite.h"
#include "Text.h"

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

    QCOMPARE(log.lines("default"_s, QtCriticalMsg), QStringList("Unable to connect to system-bus."_s));
    QCOMPARE(adaptor.path().path(), "/agent"_s);
}

static const Suite<AgentWithoutBusTest> agentWithoutBusTest;
#include "AgentWithoutBusTest.moc"
