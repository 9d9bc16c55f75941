#pragma once

#include <QString>

/// The device as a thing: what is stored on it, and its Wi-Fi card.
namespace Device {

/// Takes everything back that ConnMan and the daemon have stored, and gives the card its own address: as just
/// delivered and powered on. Neither program runs.
bool reset();
/// Where the scenarios find a file of the device.
QString file(const QString &path);

} // namespace Device
