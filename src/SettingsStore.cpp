#include "SettingsStore.h"

#include "FileReplacement.h"
#include "NetworkSettingsLog.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

/// QSettings takes a file of the same size and time for the one it has read before, and the kernel's clock is
/// coarse.
void makeNewerThan(const QFileInfo &old, const QString &fileName)
{
    QFile file(fileName);
    const QDateTime notBefore = old.lastModified().addMSecs(1);
    if (old.exists() && QFileInfo(file).lastModified() < notBefore && file.open(QIODevice::ReadWrite)) {
        file.setFileTime(notBefore, QFile::FileModificationTime);
    }
}

} // namespace

SettingsStore::SettingsStore(const QString &name)
    : m_settings(QSettings::NativeFormat, QSettings::SystemScope, QCoreApplication::organizationName(), name)
{
}

QVariant SettingsStore::value(const QString &key) const
{
    const auto unwritten = m_unwritten.constFind(key);
    return unwritten != m_unwritten.cend() ? *unwritten : m_settings.value(key);
}

void SettingsStore::setValue(const QString &key, const QVariant &value)
{
    change(key, value);
}

void SettingsStore::remove(const QString &key)
{
    change(key, QVariant());
}

void SettingsStore::change(const QString &key, const QVariant &value)
{
    m_unwritten.insert(key, value);
    if (!write()) {
        qCCritical(logNetworkSettings) << "Unable to write settings file" << m_settings.fileName();
        return;
    }
    m_unwritten.clear();
    m_settings.sync();
}

// QSettings would write the file itself, but leaves a lock and perhaps half of a new version behind when it
// is interrupted; and it does not make the change lasting.
bool SettingsStore::write()
{
    const QFileInfo file(m_settings.fileName());
    FileReplacement replacement(file.filePath());
    if (!QDir().mkpath(file.path()) || !replacement.prepare()) {
        return false;
    }
    if (file.exists() && !QFile::copy(file.filePath(), replacement.newFile())) {
        return false;
    }
    if (!writeChanges(replacement.newFile())) {
        return false;
    }
    makeNewerThan(file, replacement.newFile());
    return replacement.commit();
}

bool SettingsStore::writeChanges(const QString &fileName) const
{
    QSettings settings(fileName, m_settings.format());
    for (auto change = m_unwritten.cbegin(); change != m_unwritten.cend(); ++change) {
        settings.remove(change.key());
        if (change->isValid()) {
            settings.setValue(change.key(), *change);
        }
    }
    settings.sync();
    // The status may be that of a malformed line, which is there no more; another reader meets none.
    return QSettings(fileName, m_settings.format()).status() == QSettings::NoError;
}
