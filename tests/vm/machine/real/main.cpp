#include "BootScenarios.h"
#include "MachineScenarios.h"
#include "Text.h"

#include <QCoreApplication>
#include <QFile>

namespace {

/// The scenarios stop and start network daemons and rewrite system files: only ever inside the machine made
/// for them.
bool insideTheMachine()
{
    QFile commandLine("/proc/cmdline"_s);
    return commandLine.open(QIODevice::ReadOnly) && commandLine.readAll().contains(" test-machine ");
}

/// What follows the option, as a number; the option and its value leave the arguments. -1 where it is not
/// there.
int takeNumber(QStringList &arguments, const QString &option)
{
    const int index = arguments.indexOf(option);
    if (index < 0) {
        return -1;
    }
    const int number = arguments.value(index + 1).toInt();
    arguments.erase(arguments.begin() + index, arguments.begin() + index + 2);
    return number;
}

} // namespace

/// With "--boot NUMBER --cuts NUMBER": the scenarios that are about boots; otherwise all others.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    if (!arguments.contains("-functions"_s) && !insideTheMachine()) {
        qCritical("These scenarios run inside the test machine only: use tests/vm/run.");
        return 2;
    }
    const int boot = takeNumber(arguments, "--boot"_s);
    if (boot < 0) {
        MachineScenarios scenarios;
        return runScenarios(scenarios, arguments);
    }
    BootScenarios scenarios(boot, takeNumber(arguments, "--cuts"_s));
    return runScenarios(scenarios, arguments);
}
