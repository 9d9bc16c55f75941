#pragma once

#include "Text.h"

#include <QByteArray>
#include <QStringList>

namespace test_support {

/// The files that the daemon reads and writes, in a file system that is a test's own: below a directory, or,
/// in a process for which /etc and /var are its own, where they always are.
class DeviceFiles
{
public:
    inline static const QString hostNameFile = "/etc/hostname"_s;
    inline static const QString storesDirectory = "/etc/xdg/Tactora AB"_s;
    inline static const QString connmanDirectory = "/var/lib/connman"_s;

    /// `root`: where that file system is; empty for this process's.
    explicit DeviceFiles(QString root = {});

    /// Takes all files away, and leaves the directories that are there on the device.
    void clear();

    /// The content of /etc/hostname; empty when it is not there.
    QByteArray hostName() const { return read(hostPath(hostNameFile)); }
    void setHostName(const QByteArray &content);
    /// Replaces /etc/hostname by a directory, which no one can open as a file, not even root.
    void makeHostNameUnusable();

    /// The whole content of a settings store ("main", "region"), as the file has it; null when there is none.
    QByteArray settings(const QString &store) const { return read(hostPath(settingsFile(store))); }
    void setSettings(const QString &store, const QByteArray &content);
    static QString settingsFile(const QString &store);

    /// The content of the provisioning file `name` ("x.config") in /var/lib/connman; null when there is none.
    QByteArray connmanFile(const QString &name) const;
    void setConnmanFile(const QString &name, const QByteArray &content);
    QStringList connmanFiles() const;
    /// Takes away the directory, so that nothing can be written there.
    void removeConnmanDirectory();

    /// Where the file at `path` (absolute, below /etc or /var) is for everybody else.
    QString hostPath(const QString &path) const { return m_root + path; }

    /// Null when there is no such file.
    static QByteArray read(const QString &path);
    /// A failure is one critical line.
    static bool write(const QString &path, const QByteArray &content);

private:
    QString m_root;
};

} // namespace test_support
