#include "Bench.h"
#include "Scenarios.h"
#include "Text.h"

#include <QCoreApplication>
#include <QMetaMethod>

namespace {

/// In these the daemon has to be waited for: half a minute each. They are a run of their own, beside the
/// others.
const QStringList patientOnes{"automaticIpv6AddressAloneIsNotAnnounced"_s,
                              "missingAddressIsAnnouncedAfterSixteenLooks"_s};

QStringList allOthers()
{
    const QStringList fixture{"initTestCase"_s, "init"_s, "cleanup"_s};
    const QMetaObject &meta = Scenarios::staticMetaObject;
    QStringList names;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QString name = QString::fromLatin1(meta.method(index).name());
        if (!fixture.contains(name) && !patientOnes.contains(name)) {
            names.append(name);
        }
    }
    return names;
}

/// "--patient" and "--others" stand for the scenarios of that half; everything else is Qt Test's.
QStringList expanded(const QStringList &arguments)
{
    QStringList result;
    for (const QString &argument : arguments) {
        if (argument == "--patient"_s) {
            result += patientOnes;
        } else if (argument == "--others"_s) {
            result += allOthers();
        } else {
            result += argument;
        }
    }
    return result;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Bench bench; // before the first use of the system bus, which is its own
    Scenarios scenarios;
    return runScenarios(scenarios, expanded(QCoreApplication::arguments()));
}
