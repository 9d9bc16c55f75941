#include "KeyChord.h"

namespace {

// evdev codes.
constexpr KeyChord::Key Modifier{32};
constexpr KeyChord::Key WifiOn{37};
constexpr KeyChord::Key WifiOff{38};

} // namespace

void KeyChord::press(Key key)
{
    if (key == Modifier) {
        m_isModifierHeld = true;
    }
}

std::optional<bool> KeyChord::release(Key key)
{
    if (key == Modifier) {
        m_isModifierHeld = false;
    } else if (m_isModifierHeld && (key == WifiOn || key == WifiOff)) {
        return key == WifiOn;
    }
    return std::nullopt;
}
