#pragma once

#include <libkeyboard/Keyboard.h>

#include <optional>

/// The chord that switches Wi-Fi: one of two keys, while the modifier is held.
class KeyChord
{
public:
    using Key = libkeyboard::Keyboard::Key;

    void press(Key key);
    /// Whether Wi-Fi is to be switched on or off, if the released key says so.
    std::optional<bool> release(Key key);

private:
    bool m_isModifierHeld = false;
};
