#pragma once

#include "FakeKeyboard.h"

/// The evdev codes of the keys the daemon listens to, and their chord.
namespace keys {
constexpr int modifier = 32;
constexpr int wifiOn = 37;
constexpr int wifiOff = 38;

/// The modifier held down while the key is pressed.
inline void pressChord(test_support::FakeKeyboard &keyboard, int key)
{
    keyboard.press(modifier);
    keyboard.press(key);
    keyboard.release(key);
    keyboard.release(modifier);
}
} // namespace keys
