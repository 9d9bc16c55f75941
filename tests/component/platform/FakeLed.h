#pragma once

#include "FakeDevices.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The files of an LED in a fake /sys, as the kernel has them, and what is written to them.
class FakeLed
{
public:
    using Files = test_support::FakeDevices::LedFiles;

    /// The files of an LED that the kernel can blink (`timer` is among its triggers), and of one that it
    /// cannot.
    static Files kernelBlinking();
    static Files withoutTimerTrigger();

    FakeLed(test_support::FakeDevices &devices, const QString &name, Files files = kernelBlinking());
    ~FakeLed();
    FakeLed(const FakeLed &) = delete;
    FakeLed &operator=(const FakeLed &) = delete;

    QByteArray content(const QString &file) const;
    /// The writes since the last call, each as "file=content"; several in a row to one file may count as one.
    QStringList takeWrites() const;

    /// Gives the LED these files, with this content.
    void setUp(const Files &files) const;
    /// Takes the LED away with all its files.
    void unplug();
    /// Brings a LED back, as it was at first.
    void plugIn();

    QString realPath(const QString &file) const;
    /// Lets every write to the file fail (no space left on device), until restore().
    void breakFile(const QString &file) const;
    void restoreFile(const QString &file) const;

private:
    QString m_directory;
    Files m_files;
    int m_inotify;
    int m_timesUnplugged = 0;
};
