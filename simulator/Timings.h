#pragma once

#include <QString>

namespace simulator {

/// How long ConnMan (and what it waits for) takes, in milliseconds.
struct Timings
{
    int scan = 3000;            ///< Scan to its reply
    int announce = 100;         ///< a change in the list of services to ServicesChanged
    int association = 1500;     ///< Wi-Fi: Connect (or the agent's answer) to state "configuration"
    int configuration = 1000;   ///< address assignment: state "configuration" to "ready"
    int online = 3000;          ///< "ready" to "online"; negative: never
    int wrongPassphrase = 4000; ///< Wi-Fi: Connect (or the agent's answer) to the refusal
    int linkLocal = 35000;      ///< no DHCP server: "configuration" to "ready" with a 169.254 address
    int power = 500;            ///< SetProperty "Powered" to its reply
    int agent = 120000;         ///< the agent's time to answer
    int connect = 120000;       ///< an attempt's time to get connected
    int autoConnect = 0;        ///< to the automatic connection of favourites; negative: never

    /// The waits that tests need not sit through cut to a few milliseconds.
    static Timings fast();

    /// Sets the timing of that name; false when there is none.
    bool set(const QString &name, int milliseconds);
};

} // namespace simulator
