#include "Eventually.h"

#include <QElapsedTimer>
#include <QTest>

bool eventually(const std::function<bool()> &condition, int timeoutMs, int intervalMs)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.hasExpired(timeoutMs)) {
            return false;
        }
        QTest::qWait(intervalMs);
    }
    return true;
}
