#pragma once

/// The evdev codes of the keys the daemon listens to, and their chord.
namespace keys {

constexpr int modifier = 32;
constexpr int wifiOn = 37;
constexpr int wifiOff = 38;

/// The modifier held down while the key is pressed.
template <typename Keyboard>
void pressChord(Keyboard &keyboard, int key)
{
    keyboard.press(modifier);
    keyboard.press(key);
    keyboard.release(key);
    keyboard.release(modifier);
}

} // namespace keys
