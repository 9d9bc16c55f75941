#pragma once

#include "EventWait.h"
#include "FakeKeyboard.h"
#include <memory>
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <vector>

struct _UMockdevTestbed;

namespace test_support {

/// What a LED shows, read from its files below /sys/class/leds.
struct LedPattern
{
    enum class Kind { Off, On, Blink };
    Kind kind = Kind::Off;
    /// The whole period of a blinking LED, dark half included.
    int periodMs = 0;

    static LedPattern off() { return {Kind::Off, 0}; }
    static LedPattern on() { return {Kind::On, 0}; }
    static LedPattern blink(int periodMs) { return {Kind::Blink, periodMs}; }
    friend bool operator==(const LedPattern &a, const LedPattern &b)
    {
        return a.kind == b.kind && a.periodMs == b.periodMs;
    }
};

/// For QCOMPARE's message.
char *toString(const LedPattern &pattern);

/// The device's hardware, faked by umockdev: a tree of /sys and /dev that only processes started with
/// environment() see. One at a time in a process.
class FakeDevices
{
public:
    FakeDevices();
    ~FakeDevices();
    FakeDevices(const FakeDevices &) = delete;
    FakeDevices &operator=(const FakeDevices &) = delete;

    /// What stands in for the directories /sys and /dev.
    QString root() const;
    /// What makes a process see these devices: "NAME=value" each.
    QStringList environment() const;

    /// A LED that shines and has a timer trigger.
    void addLed(const QString &name);
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
    QString ledFile(const QString &led, const QString &file) const;
    QByteArray readLed(const QString &led, const QString &file) const;

    struct Unref
    {
        void operator()(_UMockdevTestbed *testbed) const;
    };
    std::unique_ptr<_UMockdevTestbed, Unref> m_testbed;
    std::vector<std::unique_ptr<FakeKeyboard>> m_keyboards;
};

} // namespace test_support
