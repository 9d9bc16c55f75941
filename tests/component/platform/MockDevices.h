#pragma once

#include <QString>

using UMockdevTestbed = struct _UMockdevTestbed; // NOLINT(bugprone-reserved-identifier): umockdev's own

/// A /sys and /dev of the test's own, for this process: while it lives, paths that exist in it stand for the
/// machine's. Works only in a process that has umockdev's library loaded before all others, as ctest does it.
class MockDevices
{
public:
    MockDevices();
    ~MockDevices();
    MockDevices(const MockDevices &) = delete;
    MockDevices &operator=(const MockDevices &) = delete;

    /// Where `path` (in /sys or /dev) really is.
    QString realPath(const QString &path) const;
    UMockdevTestbed *testbed() const { return m_testbed; }

private:
    UMockdevTestbed *m_testbed;
};
