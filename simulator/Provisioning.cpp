#include "Provisioning.h"

#include <algorithm>
#include <QDir>
#include <QFile>

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
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &Provisioning::changed);
}

void Provisioning::setDirectory(const QString &path)
{
    if (hasDirectory()) {
        m_watcher.removePath(m_directory);
    }
    m_directory = path;
    m_watcher.addPath(path);
    emit changed();
}

bool Provisioning::names(const QString &ssid) const
{
    const QDir directory(m_directory);
    const QStringList files = directory.entryList({QStringLiteral("*.config")}, QDir::Files);
    return std::any_of(files.cbegin(), files.cend(), [&directory, &ssid](const QString &file) {
        return fileNames(directory.filePath(file), ssid);
    });
}

} // namespace simulator
