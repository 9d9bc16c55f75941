#pragma once

/// The evdev codes of the keys the daemon listens to.
namespace keys {
constexpr int modifier = 32;
constexpr int wifiOn = 37;
constexpr int wifiOff = 38;
} // namespace keys
