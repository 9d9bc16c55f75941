#include "SettingsFixture.h"
#include "DeviceFiles.h"
#include "Text.h"

#include <QDateTime>
#include <QFile>
#include <QLoggingCategory>
#include <QTest>

#include <chrono>

using test_support::DeviceFiles;

namespace {

const QString category = "NetworkSettings"_s;

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

} // namespace

void SettingsFixture::init()
{
    setStoresWritable(true);
    DeviceFiles().clear();

    m_programs = std::make_unique<Programs>();
    m_previousPath = qgetenv("PATH");
    for (const QString &variable : commands().environment()) {
        const QStringList nameAndValue = variable.split(QLatin1Char('='));
        qputenv(qPrintable(nameAndValue.constFirst()), nameAndValue.constLast().toLocal8Bit());
    }
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

QByteArray SettingsFixture::store(const QString &name)
{
    return DeviceFiles().settings(name);
}

void SettingsFixture::setStore(const QString &name, const QByteArray &content)
{
    const QString path = DeviceFiles::settingsFile(name);
    writeFile(path, content);
    setOwnModificationTime(path);
}

void SettingsFixture::setStoresWritable(bool writable)
{
    constexpr QFile::Permissions Readable = QFile::ReadOwner | QFile::ExeOwner;
    QFile::setPermissions(DeviceFiles::storesDirectory, writable ? Readable | QFile::WriteOwner : Readable);
}

QByteArray SettingsFixture::fileContent(const QString &path)
{
    return DeviceFiles::read(path);
}

void SettingsFixture::writeFile(const QString &path, const QByteArray &content)
{
    QVERIFY(DeviceFiles::write(path, content));
}

QString SettingsFixture::networkSettingsLine(const QString &text)
{
    return test_support::critical(category, text);
}

QString SettingsFixture::plainLine(const QString &text)
{
    return test_support::critical("default"_s, text);
}
