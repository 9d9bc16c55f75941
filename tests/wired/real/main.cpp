#include "OutsideTheWorld.h"
#include "Suite.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (!isInsideTheWorld()) {
        OutsideTheWorld outside(QCoreApplication::arguments());
        return QTest::qExec(&outside, {QCoreApplication::arguments().constFirst()});
    }
    return runSuite();
}
