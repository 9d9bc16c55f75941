#include "OutsideTheWorld.h"

#include "ChildProcess.h"
#include "Text.h"
#include <QFile>
#include <QStandardPaths>
#include <QTest>
#include <unistd.h>
#include <utility>

bool isInsideTheWorld()
{
    return QFile::exists("/run/in-world"_s);
}

OutsideTheWorld::OutsideTheWorld(QStringList commandLine)
    : m_commandLine(std::move(commandLine))
{
}

void OutsideTheWorld::initTestCase()
{
    if (geteuid() != 0) {
        QSKIP("Only root can make the network and mount namespaces that this test runs in.");
    }
    for (const QString &program : {"bwrap"_s, "connmand"_s, "dnsmasq"_s, "dbus-daemon"_s, "dbus-monitor"_s,
                                   "ethtool"_s, "ip"_s, "setpriv"_s}) {
        if (QStandardPaths::findExecutable(program).isEmpty()) {
            QSKIP(qPrintable("%1 is not installed."_s.arg(program)));
        }
    }
    m_before = hostState();
}

void OutsideTheWorld::allPassInsideTheWorld()
{
    test_support::ChildProcess inside;
    inside.setProcessChannelMode(QProcess::ForwardedChannels);
    inside.start(QStringLiteral(WIRED_DIR "/in-world"), m_commandLine);
    QVERIFY2(inside.waitForFinished(-1), qPrintable(inside.errorString()));
    QCOMPARE(inside.exitStatus(), QProcess::NormalExit);
    QCOMPARE(inside.exitCode(), 0);
}

void OutsideTheWorld::theMachineIsAsItWas()
{
    const HostState after = hostState();
    QCOMPARE(after.keys(), m_before.keys());
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        QVERIFY2(it.value() == m_before.value(it.key()), qPrintable(it.key()));
    }
}
