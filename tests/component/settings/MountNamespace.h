#pragma once

#include "Text.h"

#include <QCoreApplication>
#include <QStringList>

/// Runs tests of code with fixed paths where those paths are the tests' own.
namespace mount_namespace {

/// Replaces the process by `command`, which starts the same program with the same arguments again. Ends the
/// process when there is no such command.
void startAgain(const QStringList &command, char **arguments);

/// Returns only in a mount namespace whose /etc and /var are empty and small: outside one it replaces the
/// process by bubblewrap, which starts the same program with the same arguments again. There are no
/// capabilities inside, so that file permissions hold for root too. Ends the process when no such namespace
/// can be had.
void enter(char **arguments);

/// The main() of a program of suites, each in such a namespace.
int run(int argc, char **argv);

/// Makes the settings stores those of the daemon.
inline void setIdentity()
{
    QCoreApplication::setOrganizationName("Tactora AB"_s);
    QCoreApplication::setApplicationName("network-manager"_s);
}

} // namespace mount_namespace
