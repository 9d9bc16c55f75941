#pragma once

#include <QtGlobal>

/// What mirroring that many services costs the daemon and a bare client: time, processor time and memory.
void benchMirror(uint services);
/// The same, and the processor time until they are quiet and that of 1,000 changes of state.
void benchQuietMirror(uint services);
