#pragma once

/// How a command ended, as the program's exit status.
enum ExitStatus : int {
    Done = 0,
    Refused = 1,     ///< the daemon said no
    Misused = 2,     ///< it was not understood
    Unreachable = 3, ///< there is no daemon, or no permission to use it
    Cancelled = 130, ///< Ctrl-C, as shells count it
};
