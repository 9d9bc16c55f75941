#include "OnTheAirScenarios.h"

#include <QCoreApplication>
#include <QFile>
#include <QTest>

namespace {

/// The scenarios start network daemons and rewrite system files: only ever inside the machine made for them.
bool insideTheMachine()
{
    QFile commandLine(QStringLiteral("/proc/cmdline"));
    return commandLine.open(QIODevice::ReadOnly) && commandLine.readAll().contains("vm.init=");
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const bool listing = QCoreApplication::arguments().contains(QStringLiteral("-functions"));
    if (!listing && !insideTheMachine()) {
        qCritical("These scenarios run inside the test machine only: use tests/vm/run.");
        return 2;
    }
    OnTheAirScenarios scenarios;
    return QTest::qExec(&scenarios, argc, argv);
}
