#pragma once

#include "FakeDevices.h"
#include "KeyboardReport.h"

#include <libkeyboard/Keyboard.h>

#include <QLatin1String>

// What the tests of keyboards have in common.

using libkeyboard::Keyboard;
using test_support::FakeDevices;
using test_support::FakeKeyboard;

inline const QLatin1String node("event0");
inline const QLatin1String device("/dev/input/event0");
inline constexpr int modifier = 32;
inline constexpr int anotherKey = 37;

/// A keyboard that is plugged in and not open yet, and what is reported of it.
struct KeyboardScene
{
    FakeDevices devices{FakeDevices::SeenBy::ThisProcess};
    FakeKeyboard &keys = devices.addKeyboard(node);
    Keyboard keyboard{device};
    const KeyboardReport report{keyboard};
};
