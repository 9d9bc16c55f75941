#pragma once

#include <functional>
#include <memory>
#include <QObject>
#include <QTest>

/// Runs a test where the backend that it is linked with can work; the result is the program's exit status.
int runScenarios(int argc, char *argv[], const std::function<std::unique_ptr<QObject>()> &makeTest);

#define SCENARIO_MAIN(Test)                                                                                  \
    int main(int argc, char *argv[])                                                                         \
    {                                                                                                        \
        return runScenarios(argc, argv, [] { return std::make_unique<Test>(); });                            \
    }
