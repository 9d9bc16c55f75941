// For programs of suites that need nothing else first.

#include "Suite.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return runSuite();
}
