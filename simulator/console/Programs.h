#pragma once

#include <QString>

class Interrupts;

/// Starts the user's shell ($SHELL) with the device's bus as the system bus and this build's programs in its
/// PATH; its exit status.
int runShell(const QString &busAddress);

/// Prints the bus's address for another program, and returns when standard input is closed or a signal has
/// come.
void offerBus(const QString &busAddress, const Interrupts &interrupts);
