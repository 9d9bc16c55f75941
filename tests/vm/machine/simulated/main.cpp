#include "Bench.h"
#include "Scenarios.h"

#include <QCoreApplication>
#include <QMetaMethod>

namespace {

/// In these the daemon has to be waited for: half a minute each. They are a run of their own, beside the
/// others.
const QStringList patientOnes{QStringLiteral("automaticIpv6AddressAloneIsNotAnnounced"),
                              QStringLiteral("missingAddressIsAnnouncedAfterSixteenLooks")};

QStringList allOthers()
{
    const QStringList fixture{QStringLiteral("initTestCase"), QStringLiteral("init"),
                              QStringLiteral("cleanup")};
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
        if (argument == QStringLiteral("--patient")) {
            result += patientOnes;
        } else if (argument == QStringLiteral("--others")) {
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
