#include "DeviceFiles.h"

#include <QDebug>
#include <QDir>
#include <QFile>

#include <utility>

namespace test_support {

DeviceFiles::DeviceFiles(QString root)
    : m_root(std::move(root))
{
}

void DeviceFiles::clear()
{
    for (const QString &directory : {storesDirectory, connmanDirectory}) {
        QDir(hostPath(directory)).removeRecursively();
        QDir().mkpath(hostPath(directory));
    }
    QFile::remove(hostPath(hostNameFile));
    QDir().rmdir(hostPath(hostNameFile));
}

void DeviceFiles::setHostName(const QByteArray &content)
{
    write(hostPath(hostNameFile), content);
}

void DeviceFiles::makeHostNameUnusable()
{
    QFile::remove(hostPath(hostNameFile));
    QDir().mkdir(hostPath(hostNameFile));
}

void DeviceFiles::setSettings(const QString &store, const QByteArray &content)
{
    write(hostPath(settingsFile(store)), content);
}

QString DeviceFiles::settingsFile(const QString &store)
{
    return "%1/%2.conf"_s.arg(storesDirectory, store);
}

QByteArray DeviceFiles::connmanFile(const QString &name) const
{
    return read(hostPath(connmanDirectory) + QLatin1Char('/') + name);
}

void DeviceFiles::setConnmanFile(const QString &name, const QByteArray &content)
{
    write(hostPath(connmanDirectory) + QLatin1Char('/') + name, content);
}

QStringList DeviceFiles::connmanFiles() const
{
    return QDir(hostPath(connmanDirectory)).entryList(QDir::Files);
}

void DeviceFiles::removeConnmanDirectory()
{
    QDir(hostPath(connmanDirectory)).removeRecursively();
}

QByteArray DeviceFiles::read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool DeviceFiles::write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    if (!isWritten) {
        qCritical() << "Device's files:" << path << file.errorString();
    }
    return isWritten;
}

} // namespace test_support
