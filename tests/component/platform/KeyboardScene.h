#pragma once

#include "KeyboardReport.h"
#include "MockDevices.h"
#include "MockKeyboard.h"

#include <libkeyboard/Keyboard.h>

#include <QLatin1String>

// What the tests of keyboards have in common.

using libkeyboard::Keyboard;

inline const QLatin1String device("/dev/input/event0");
inline constexpr int modifier = 32;
inline constexpr int anotherKey = 37;

/// A keyboard that is plugged in and not open yet, and what is reported of it.
struct KeyboardScene
{
    const MockDevices devices;
    MockKeyboard keys{devices, device};
    Keyboard keyboard{device};
    const KeyboardReport report{keyboard};
};
