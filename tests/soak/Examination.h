#pragma once

#include <QtGlobal>

namespace test_support {
class Daemon;
}

namespace soak {

class Run;

/// The memory in KiB that is the daemon's own (not files it has mapped), once the timers that hold something
/// have run out: it waits for that. 0 when the daemon is gone.
qint64 settledMemoryKiB(const test_support::Daemon &daemon);

/// What holds at the end of every figure: the daemon still runs, ends well when asked to, and its log has
/// nothing but its own lines. The daemon has ended afterwards in any case.
void examineEnd(Run &run, test_support::Daemon &daemon);

/// How many lines the log has (and has had since the last call) that the daemon did not mean to write. A
/// daemon that complains does so in its own words; what Qt, a library or a sanitizer says shows a mistake.
int unexpectedLines(test_support::Daemon &daemon);

} // namespace soak
