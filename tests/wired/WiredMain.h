#pragma once

#include "OutsideTheWorld.h"
#include <QCoreApplication>
#include <QTest>

/// The main function of a wired test program: started on the machine it runs itself inside a private world.
template <typename Test>
int wiredMain(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (!isInsideTheWorld()) {
        OutsideTheWorld outside(QCoreApplication::arguments());
        return QTest::qExec(&outside, {QCoreApplication::arguments().constFirst()});
    }
    Test test;
    return QTest::qExec(&test, argc, argv);
}

#define WIRED_MAIN(Test)                                                                                     \
    int main(int argc, char *argv[])                                                                         \
    {                                                                                                        \
        return wiredMain<Test>(argc, argv);                                                                  \
    }
