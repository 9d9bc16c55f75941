#include "Command.h"
#include "PrivateWorld.h"
#include "SettingsFixture.h"

#include <csignal>

using namespace std::chrono_literals;

namespace {
constexpr auto longEnough = 30s;
constexpr auto shortTime = 200ms;

QString iw()
{
    return QStringLiteral("iw");
}
} // namespace

class CommandTest : public SettingsFixture
{
    Q_OBJECT

private slots:
    void commandsMayTakeThirtySeconds();
    void commandThatEndsHasEndedNormally();
    void exitCodeDoesNotCount();
    void crashedCommandEndsInTimeButNotNormally();
    void missingProgramDoesNotEnd();
    void commandThatHasEndedBeforeTheWaitHasEnded();
    void commandThatHangsIsKilled();
    void argumentsArePassedWithoutAShell();
};

void CommandTest::commandsMayTakeThirtySeconds()
{
    QCOMPARE(Command::Timeout, std::chrono::milliseconds(30000));
}

void CommandTest::commandThatEndsHasEndedNormally()
{
    QVERIFY(Command::run(iw(), {QStringLiteral("list")}));
    QCOMPARE(commands().calls(), QStringList(QStringLiteral("iw list")));
}

void CommandTest::exitCodeDoesNotCount()
{
    commands().script(iw(), {QStringLiteral("exit 255")});
    QVERIFY(Command::run(iw(), {}));
}

void CommandTest::crashedCommandEndsInTimeButNotNormally()
{
    commands().script(iw(), {QStringLiteral("crash")});
    QProcess process;
    process.start(iw(), {});
    QVERIFY(Command::waitForEnd(process, longEnough));
    QVERIFY(!Command::endsNormally(process, longEnough));
}

void CommandTest::missingProgramDoesNotEnd()
{
    commands().removeProgram(iw());
    QProcess process;
    process.start(iw(), {});
    QVERIFY(!Command::waitForEnd(process, longEnough));
    QVERIFY(!Command::run(iw(), {}));
}

void CommandTest::commandThatHasEndedBeforeTheWaitHasEnded()
{
    QProcess process;
    process.start(iw(), {});
    QVERIFY(process.waitForFinished());
    QVERIFY(Command::endsNormally(process, longEnough));
}

void CommandTest::commandThatHangsIsKilled()
{
    commands().script(iw(), {QStringLiteral("hang")});
    QProcess process;
    process.start(iw(), {});
    QVERIFY(process.waitForStarted());

    QVERIFY(!Command::endsNormally(process, shortTime));
    QCOMPARE(process.state(), QProcess::NotRunning);
    QCOMPARE(process.exitCode(), int(SIGKILL));
}

void CommandTest::argumentsArePassedWithoutAShell()
{
    QVERIFY(Command::run(iw(), {QStringLiteral("a b"), QString(), QStringLiteral("$HOME;*")}));
    QCOMPARE(commands().calls(), QStringList(QStringLiteral("iw \"a b\" \"\" $HOME;*")));
}

int main(int argc, char **argv)
{
    return private_world::run<CommandTest>(argc, argv);
}
#include "CommandTest.moc"
