#pragma once

#include "DeviceFiles.h"
#include "FakeCommands.h"
#include "FakeDevices.h"
#include <QStringList>
#include <QTemporaryDir>

namespace test_support {

/// Where a sandbox has its files, and made before them.
struct TemporaryRoot
{
    QTemporaryDir directory;
};

/// A world of its own for one daemon: a file system in which /etc/hostname, /etc/xdg and /var/lib/connman are
/// the test's, LEDs, keyboard and the programs it runs are fakes. Of the machine's files
/// only those needed to run a program are there; nothing the daemon does there reaches the machine's
/// settings.
class DaemonSandbox : private TemporaryRoot, public DeviceFiles
{
public:
    DaemonSandbox();

    FakeCommands &commands() { return m_commands; }
    /// The LEDs "led8" and "led10" and the keyboard are there until a test takes them away.
    FakeDevices &devices() { return m_devices; }
    /// The keyboard at the daemon's default path.
    FakeKeyboard &keyboard() { return m_keyboard; }

    /// Makes /etc/hostname a mount point, which can be written but not replaced. Before the daemon starts.
    void mountHostName(const QByteArray &content);

    /// The whole environment of the daemon, "NAME=value" each, but for what belongs to one start (bus,
    /// logging).
    QStringList environment() const;
    /// The arguments for bwrap that come before the program to run and enter this world.
    QStringList namespaceArguments(const QStringList &environment) const;

private:
    FakeCommands m_commands;
    FakeDevices m_devices;
    FakeKeyboard &m_keyboard;
    bool m_isHostNameMounted = false;
};

} // namespace test_support
