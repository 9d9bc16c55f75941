#include "FileReplacement.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t NewFileMode = 0644;
constexpr mode_t KeptModeBits = 0755;

QString withoutLinks(const QString &path)
{
    const QString existing = QFileInfo(path).canonicalFilePath();
    return existing.isEmpty() ? path : existing;
}

/// A rename is lasting only once its directory is.
bool syncDirectory(const QString &path)
{
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    const bool isSynced = fsync(descriptor) == 0;
    close(descriptor);
    return isSynced;
}

} // namespace

FileReplacement::FileReplacement(const QString &path)
    : m_path(withoutLinks(path))
    , m_workDirectory(QFileInfo(m_path).path() + QStringLiteral("/.network-manager.new"))
{
}

FileReplacement::~FileReplacement()
{
    QDir(m_workDirectory).removeRecursively();
}

bool FileReplacement::failBecause(const QString &reason)
{
    m_error = reason;
    return false;
}

bool FileReplacement::prepare()
{
    // Renaming asks nobody whether the old version may be written.
    QFile old(m_path);
    if (old.exists() && !old.open(QIODevice::ReadWrite)) {
        return failBecause(old.errorString());
    }
    QDir(m_workDirectory).removeRecursively();
    if (mkdir(QFile::encodeName(m_workDirectory).constData(), S_IRWXU) != 0) {
        return failBecause(qt_error_string());
    }
    return true;
}

QString FileReplacement::newFile() const
{
    return m_workDirectory + QLatin1Char('/') + QFileInfo(m_path).fileName();
}

bool FileReplacement::write(const QByteArray &content)
{
    QFile file(newFile());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(content) != content.size()) {
        return failBecause(file.errorString());
    }
    return true;
}

bool FileReplacement::settlePermissions(int descriptor) const
{
    struct stat old = {};
    if (stat(QFile::encodeName(m_path).constData(), &old) != 0) {
        return fchmod(descriptor, NewFileMode) == 0;
    }
    // Without the right to give files away it becomes the daemon's own.
    [[maybe_unused]] const int outcome = fchown(descriptor, old.st_uid, old.st_gid);
    return fchmod(descriptor, old.st_mode & KeptModeBits) == 0;
}

bool FileReplacement::commit()
{
    QFile file(newFile());
    if (!file.open(QIODevice::ReadOnly)) {
        return failBecause(file.errorString());
    }
    if (!settlePermissions(file.handle()) || fsync(file.handle()) != 0 ||
        std::rename(QFile::encodeName(newFile()).constData(), QFile::encodeName(m_path).constData()) != 0 ||
        !syncDirectory(QFileInfo(m_path).path())) {
        return failBecause(qt_error_string());
    }
    return true;
}

QString overwrite(QFileDevice &file, const QByteArray &content)
{
    // As long as the old content, so that one write leaves nothing of it.
    const QByteArray padded = content.leftJustified(static_cast<int>(file.size()), '\n');
    if (file.write(padded) != padded.size() || !file.flush() || !file.resize(content.size())) {
        return file.errorString();
    }
    return fsync(file.handle()) == 0 ? QString() : qt_error_string();
}
