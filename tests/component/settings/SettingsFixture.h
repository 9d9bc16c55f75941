#pragma once

#include "FakeCommands.h"
#include "LogCapture.h"

#include <memory>
#include <optional>
#include <QByteArray>
#include <QObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <thread>

class NetworkSettings;

/// Every test begins with a device that has stored nothing, fakes of "iw" and "ip" as the whole PATH,
/// and a log that takes the settings' debug lines too.
class SettingsFixture : public QObject
{
    Q_OBJECT

protected:
    test_support::FakeCommands &commands() { return m_programs->commands; }
    /// Releases the commands on hold while this thread is blocked.
    std::thread releaseLater();
    test_support::LogCapture &log() { return *m_log; }
    QStringList debugLines() const;
    QStringList complaints() const { return m_log->complaints(); }

    /// The whole file of a settings store, null when there is none.
    static QByteArray store(const QString &name);
    static void setStore(const QString &name, const QByteArray &content);
    /// Whether files in the directory of the settings stores can be written.
    static void setStoresWritable(bool writable);

    static QByteArray fileContent(const QString &path);
    static void writeFile(const QString &path, const QByteArray &content);

    /// Critical lines, as complaints() has them.
    static QString networkSettingsLine(const QString &text);
    static QString plainLine(const QString &text);

private slots:
    void init();
    void cleanup();

private:
    struct Programs
    {
        QTemporaryDir directory;
        test_support::FakeCommands commands{directory.path()};
    };

    std::unique_ptr<Programs> m_programs;
    std::unique_ptr<test_support::LogCapture> m_log;
    QByteArray m_previousPath;
};
