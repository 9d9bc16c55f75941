#pragma once

#include <QByteArray>
#include <QString>

class QFileDevice;

/// A new version of a file, made beside the old one and put in its place as a whole: whenever the process or
/// the device's power goes, the path leads to the old version or to the new one. What is not committed is
/// removed.
///
/// The new version is made in a hidden directory next to the file. Its name is always the same, so that what
/// a power cut leaves there never becomes more, and it is no file, which ConnMan could take for one of its
/// own. One replacement in a directory at a time.
class FileReplacement
{
public:
    /// `path`: the file to replace, or to make. Where it is a link, what it leads to is replaced.
    explicit FileReplacement(const QString &path);
    ~FileReplacement();
    FileReplacement(const FileReplacement &) = delete;
    FileReplacement &operator=(const FileReplacement &) = delete;

    /// Makes room for the new version. False where nothing can be made, and also where the old version must
    /// not be written.
    bool prepare();
    /// Where the new version is to be written; there is nothing yet.
    QString newFile() const;
    /// Writes the whole new version.
    bool write(const QByteArray &content);
    /// Puts the new version in place, for good. It keeps the permissions of the old one, and where possible
    /// its owner, but only the owner may write it.
    bool commit();

    /// The system's reason why one of these has failed.
    QString errorString() const { return m_error; }

private:
    bool failBecause(const QString &reason);
    bool settlePermissions(int descriptor) const;

    QString m_path;
    QString m_workDirectory;
    QString m_error;
};

/// Writes new content over the old one of a file open for reading and writing, for one that cannot be
/// replaced because it is a mount point: after a power cut it holds the old content or the new, the latter
/// perhaps followed by empty lines. Returns the system's reason when it fails; null when it worked.
QString overwrite(QFileDevice &file, const QByteArray &content);
