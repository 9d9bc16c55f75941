#pragma once

#include "LedPattern.h"

#include <QString>

/// The device as a thing: what is stored on it, its Wi-Fi card and its LEDs.
namespace Device {

/// Takes everything back that ConnMan and the daemon have stored, and gives the card its own address: as just
/// delivered and powered on. Neither program runs.
bool reset();
/// Where the scenarios find a file of the device.
QString file(const QString &path);
/// What "led8" (Wi-Fi) or "led10" (Ethernet) shows.
test_support::LedPattern led(const QString &name);

} // namespace Device
