#pragma once

#include <QString>

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
    /// Of the LED whose files are in that directory.
    static LedPattern shownBy(const QString &directory);

    friend bool operator==(const LedPattern &a, const LedPattern &b)
    {
        return a.kind == b.kind && a.periodMs == b.periodMs;
    }
    friend bool operator!=(const LedPattern &a, const LedPattern &b) { return !(a == b); }
};

/// For QCOMPARE's message.
char *toString(const LedPattern &pattern);

} // namespace test_support
