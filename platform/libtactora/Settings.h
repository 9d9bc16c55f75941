#pragma once

namespace libtactora {

/// The device-wide settings store.
class Settings
{
public:
    Settings() = delete;

    /// Makes every default-constructed QSettings read and write the program's file in the system scope,
    /// `/etc/xdg/<organisation>/<application>.conf` (or below the first directory of $XDG_CONFIG_DIRS), in
    /// INI format. Call it once, after the application's identity is set and before any settings are read.
    /// From then on settings of the user scope lie in the system scope's directory: a device has no users.
    static void init();
};

} // namespace libtactora
