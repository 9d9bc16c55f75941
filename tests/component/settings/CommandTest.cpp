#include "Command.h"
#include "SettingsFixture.h"
#include "Suite.h"

#include <csignal>

#include <QElapsedTimer>
#include <QPointer>

#include <dlfcn.h>

#include <thread>

using namespace std::chrono_literals;

namespace {

/// Whether killing a process has no effect, as on one that waits for a driver.
bool killIsIdle = false;

constexpr auto longEnough = 30s;
constexpr auto shortTime = 200ms;

QString iw()
{
    return QStringLiteral("iw");
}
} // namespace

/// In the place of the C library's, for this program and the libraries it uses.
extern "C" int kill(pid_t process, int signal) noexcept
{
    if (killIsIdle) {
        return 0;
    }
    using Kill = int (*)(pid_t, int);
    static const auto kill = reinterpret_cast<Kill>(dlsym(RTLD_NEXT, "kill"));
    return kill(process, signal);
}

class CommandTest : public SettingsFixture
{
    Q_OBJECT

private slots:
    void commandMayTakeThirtySecondsButNoMore();
    void commandThatEndsHasEndedNormally();
    void exitCodeDoesNotCount();
    void crashedCommandEndsInTimeButNotNormally();
    void missingProgramDoesNotEnd();
    void commandThatHasEndedBeforeTheWaitHasEnded();
    void commandThatHangsIsKilled();
    void commandThatCannotBeKilledIsGivenUp();
    void argumentsArePassedWithoutAShell();
};

void CommandTest::commandMayTakeThirtySecondsButNoMore()
{
    commands().script(iw(), {QStringLiteral("hold")});
    QElapsedTimer elapsed;
    elapsed.start();
    std::thread release([this] {
        std::this_thread::sleep_for(32s);
        commands().release();
    });
    const bool ended = Command::run(iw(), {});
    const std::chrono::milliseconds took(elapsed.elapsed());
    release.join();
    QVERIFY(!ended);
    QVERIFY2(took >= 30s, qPrintable(QString::number(took.count())));
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

void CommandTest::commandThatCannotBeKilledIsGivenUp()
{
    commands().script(iw(), {QStringLiteral("hold")});
    Command::ProcessPointer process = Command::start(iw(), {});
    const QPointer<QProcess> observed = process.get();
    QVERIFY(process->waitForStarted());

    QElapsedTimer elapsed;
    elapsed.start();
    killIsIdle = true;
    const bool ended = Command::endsNormally(*process, shortTime);
    process.reset();
    killIsIdle = false;
    QVERIFY(!ended);
    QVERIFY2(elapsed.elapsed() < qint64(10000), qPrintable(QString::number(elapsed.elapsed())));
    QVERIFY(observed);

    commands().release();
    QTRY_VERIFY(!observed);
}

void CommandTest::argumentsArePassedWithoutAShell()
{
    QVERIFY(Command::run(iw(), {QStringLiteral("a b"), QString(), QStringLiteral("$HOME;*")}));
    QCOMPARE(commands().calls(), QStringList(QStringLiteral("iw \"a b\" \"\" $HOME;*")));
}

static const Suite<CommandTest> suite;
#include "CommandTest.moc"
