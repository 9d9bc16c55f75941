#pragma once

#include "EventWait.h"
#include "FakeKeyboard.h"
#include "LedPattern.h"
#include <memory>
#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <vector>

struct _UMockdevTestbed;

namespace test_support {

/// The device's hardware, faked by umockdev: a tree of /sys and /dev. One at a time in a process.
class FakeDevices
{
public:
    /// Processes started with environment(); or this one alone, which must have umockdev's library loaded
    /// before all others, as ctest does it.
    enum class SeenBy { StartedProcesses, ThisProcess };
    explicit FakeDevices(SeenBy who = SeenBy::StartedProcesses);
    ~FakeDevices();
    FakeDevices(const FakeDevices &) = delete;
    FakeDevices &operator=(const FakeDevices &) = delete;

    /// What stands in for the directories /sys and /dev.
    QString root() const;
    /// What makes a process see these devices: "NAME=value" each.
    QStringList environment() const;

    /// A LED by its files' names and contents; that of the default shines and has a timer trigger.
    using LedFiles = QMap<QString, QByteArray>;
    void addLed(const QString &name, const LedFiles &files = shiningLed());
    void removeLed(const QString &name);
    LedPattern led(const QString &name) const;
    /// Makes the LEDs' files read as the kernel's do, for a program that is about to start: a file of the
    /// fake holds what was written to it last.
    void rewriteTriggers() const;
    /// The files that change when what it shows does.
    QStringList ledFiles(const QString &name) const;
    /// Runs the event loop until the LED shows `pattern`.
    bool waitForLed(const QString &name, const LedPattern &pattern, int timeoutMs = eventTimeoutMs) const;

    /// A keyboard with every key up, at "/dev/input/<node>".
    FakeKeyboard &addKeyboard(const QString &node);

private:
    static LedFiles shiningLed();
    QString ledDirectory(const QString &led) const;

    struct Unref
    {
        void operator()(_UMockdevTestbed *testbed) const;
    };
    std::unique_ptr<_UMockdevTestbed, Unref> m_testbed;
    std::vector<std::unique_ptr<FakeKeyboard>> m_keyboards;
};

} // namespace test_support
