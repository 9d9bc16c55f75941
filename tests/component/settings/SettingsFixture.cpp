#include "SettingsFixture.h"
#include "Text.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTest>

#include <chrono>

namespace {

const QString storesDirectory = "/etc/xdg/Tactora AB"_s;
const QString provisioningDirectory = "/var/lib/connman"_s;
const QString category = "NetworkSettings"_s;

QString storeFile(const QString &name)
{
    return "%1/%2.conf"_s.arg(storesDirectory, name);
}

void makeEmpty(const QString &directory)
{
    QDir(directory).removeRecursively();
    QVERIFY(QDir().mkpath(directory));
}

/// QSettings takes a file of the same size and modification time for the one it has read before, and the
/// clock of the file system is too coarse to tell two tests apart.
void setOwnModificationTime(const QString &path)
{
    static QDateTime time = QDateTime::fromSecsSinceEpoch(0);
    time = time.addSecs(1);
    QFile file(path);
    QVERIFY2(file.open(QIODevice::ReadWrite), qPrintable(file.errorString()));
    QVERIFY2(file.setFileTime(time, QFile::FileModificationTime), qPrintable(file.errorString()));
}

void removeFileOrDirectory(const QString &path)
{
    QFile::remove(path);
    QDir().rmdir(path);
}

} // namespace

void SettingsFixture::init()
{
    setStoresWritable(true);
    makeEmpty(storesDirectory);
    makeEmpty(provisioningDirectory);
    removeFileOrDirectory("/etc/hostname"_s);

    m_programs = std::make_unique<Programs>();
    m_previousPath = qgetenv("PATH");
    qputenv("PATH", commands().path().toLocal8Bit());
    qputenv("STAND_IN_DIR", commands().directory().toLocal8Bit());
    QLoggingCategory::setFilterRules("NetworkSettings.debug=true"_s);
    m_log = std::make_unique<test_support::LogCapture>();
}

void SettingsFixture::cleanup()
{
    m_log.reset();
    qputenv("PATH", m_previousPath);
    m_programs.reset();
}

std::thread SettingsFixture::releaseLater()
{
    // Nothing can tell from outside that the main thread has begun to wait; releasing earlier would be
    // harmless, only less telling.
    return std::thread([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        commands().release();
    });
}

QStringList SettingsFixture::debugLines() const
{
    return m_log->lines(category, QtDebugMsg);
}

QStringList SettingsFixture::criticalLines() const
{
    QStringList lines;
    for (const test_support::LogMessage &message : m_log->messages()) {
        if (message.type == QtCriticalMsg) {
            lines.append(message.category + ": "_s + message.text);
        }
    }
    return lines;
}

QByteArray SettingsFixture::store(const QString &name)
{
    return fileContent(storeFile(name));
}

void SettingsFixture::setStore(const QString &name, const QByteArray &content)
{
    const QString path = storeFile(name);
    writeFile(path, content);
    setOwnModificationTime(path);
}

void SettingsFixture::setStoresWritable(bool writable)
{
    constexpr QFile::Permissions Readable = QFile::ReadOwner | QFile::ExeOwner;
    QFile::setPermissions(storesDirectory, writable ? Readable | QFile::WriteOwner : Readable);
}

QByteArray SettingsFixture::fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void SettingsFixture::writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(file.errorString()));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QString SettingsFixture::networkSettingsLine(const QString &text)
{
    return category + ": "_s + text;
}

QString SettingsFixture::plainLine(const QString &text)
{
    return "default: "_s + text;
}
