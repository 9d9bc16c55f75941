#include "Provisioning.h"

#include <algorithm>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace simulator {

namespace {
bool fileNames(const QString &path, const QString &ssid)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QList<QByteArray> lines = file.readAll().split('\n');
    return lines.contains("Name=" + ssid.toUtf8());
}
} // namespace

Provisioning::Provisioning(QObject *parent)
    : QObject(parent)
{
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &Provisioning::look);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &Provisioning::changed);
}

void Provisioning::setDirectory(const QString &path)
{
    if (hasDirectory()) {
        m_watcher.removePath(m_directory);
    }
    m_directory = path;
    m_watcher.addPath(path);
    look();
}

// A file is there before anything is in it: it is watched first and read then, so that no writing is missed.
void Provisioning::look()
{
    const QStringList present = files();
    if (!present.isEmpty()) {
        m_watcher.addPaths(present);
    }
    emit changed();
}

bool Provisioning::names(const QString &ssid) const
{
    const QStringList present = files();
    return std::any_of(present.cbegin(), present.cend(),
                       [&ssid](const QString &path) { return fileNames(path, ssid); });
}

QStringList Provisioning::files() const
{
    QStringList paths;
    const QFileInfoList present = QDir(m_directory).entryInfoList({QStringLiteral("*.config")}, QDir::Files);
    for (const QFileInfo &file : present) {
        paths.append(file.filePath());
    }
    return paths;
}

} // namespace simulator
