#include "ChildProcess.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace test_support {

namespace {
constexpr int stopTimeoutMs = 10000;
}

ChildProcess::~ChildProcess()
{
    stopProcess(*this);
}

void ChildProcess::setupChildProcess()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpgid(0, 0);
}

void stopProcess(QProcess &process)
{
    if (process.state() == QProcess::NotRunning) {
        return;
    }
    process.terminate();
    if (!process.waitForFinished(stopTimeoutMs)) {
        process.kill();
        process.waitForFinished(stopTimeoutMs);
    }
}

} // namespace test_support
