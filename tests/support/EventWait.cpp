#include "EventWait.h"

#include <QTest>

namespace test_support {

bool eventually(const std::function<bool()> &condition, int timeoutMs, int intervalMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QTest::qWait(intervalMs);
    }
    return true;
}

} // namespace test_support
