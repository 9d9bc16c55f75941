#include "Command.h"
#include "SettingsFixture.h"
#include "Suite.h"
#include "Text.h"

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
    return "iw"_s;
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
    commands().script(iw(), {"hold"_s});
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
    QVERIFY(Command::run(iw(), {"list"_s}));
    QCOMPARE(commands().calls(), QStringList("iw list"_s));
}

void CommandTest::exitCodeDoesNotCount()
{
    commands().script(iw(), {"exit 255"_s});
    QVERIFY(Command::run(iw(), {}));
}

void CommandTest::crashedCommandEndsInTimeButNotNormally()
{
    commands().script(iw(), {"crash"_s});
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
    commands().script(iw(), {"hang"_s});
    QProcess process;
    process.start(iw(), {});
    QVERIFY(process.waitForStarted());

    QVERIFY(!Command::endsNormally(process, shortTime));
    QCOMPARE(process.state(), QProcess::NotRunning);
    QCOMPARE(process.exitCode(), int(SIGKILL));
}

void CommandTest::commandThatCannotBeKilledIsGivenUp()
{
    commands().script(iw(), {"hold"_s});
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
    QVERIFY(Command::run(iw(), {"a b"_s, QString(), "$HOME;*"_s}));
    QCOMPARE(commands().calls(), QStringList("iw \"a b\" \"\" $HOME;*"_s));
}

static const Suite<CommandTest> commandTest;
#include "CommandTest.moc"
