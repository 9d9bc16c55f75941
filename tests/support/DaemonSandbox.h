#pragma once

#include "CommandStandIns.h"
#include "FakeDevices.h"
#include <QDir>
#include <QStringList>
#include <QTemporaryDir>

namespace test_support {

/// A world of its own for one daemon: a file system in which /etc/hostname, /etc/xdg and /var/lib/connman are
/// the test's, LEDs and keyboard are fakes and the programs it runs are stand-ins. Of the machine's files
/// only those needed to run a program are there; nothing the daemon does there reaches the machine's
/// settings.
class DaemonSandbox
{
public:
    DaemonSandbox();

    CommandStandIns &commands() { return m_commands; }
    /// The LEDs "led8" and "led10" and the keyboard are there until a test takes them away.
    FakeDevices &devices() { return m_devices; }
    /// The keyboard at the daemon's default path.
    FakeKeyboard &keyboard() { return m_keyboard; }

    /// The content of /etc/hostname; empty when it is not there.
    QByteArray hostName() const;
    void setHostName(const QByteArray &content);
    /// Makes /etc/hostname a mount point, which can be written but not replaced. Before the daemon starts.
    void mountHostName(const QByteArray &content);
    /// Replaces /etc/hostname by a directory, which no one can open as a file, not even root.
    void makeHostNameUnusable();

    /// The whole content of a settings store ("main", "region"), as the file has it.
    QByteArray settings(const QString &store) const;
    void setSettings(const QString &store, const QByteArray &content);

    /// The content of the provisioning file `name` ("x.config") in /var/lib/connman; null when there is none.
    QByteArray connmanFile(const QString &name) const;
    void setConnmanFile(const QString &name, const QByteArray &content);
    QStringList connmanFiles() const;
    /// Takes away the directory, so that nothing can be written there.
    void removeConnmanDirectory();

    /// Where the file that the daemon sees at `path` (absolute, below /etc or /var) is for everybody else.
    QString hostPath(const QString &path) const { return m_directory.path() + path; }

    /// The whole environment of the daemon, "NAME=value" each, but for what belongs to one start (bus,
    /// logging).
    QStringList environment() const;
    /// The arguments for bwrap that come before the program to run and enter this world.
    QStringList namespaceArguments(const QStringList &environment) const;

private:
    QString settingsFile(const QString &store) const;

    QTemporaryDir m_directory;
    CommandStandIns m_commands;
    FakeDevices m_devices;
    FakeKeyboard &m_keyboard;
    bool m_isHostNameMounted = false;
};

} // namespace test_support
