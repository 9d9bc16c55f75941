#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QStringList>

namespace simulator {

/// ConnMan's provisioning files: "*.config" in its directory, each naming a network.
class Provisioning : public QObject
{
    Q_OBJECT
public:
    explicit Provisioning(QObject *parent = nullptr);

    void setDirectory(const QString &path);
    /// Without a directory there are no files to look at, and networks are what the script says they are.
    bool hasDirectory() const { return !m_directory.isEmpty(); }
    /// Whether a file names that network, now.
    bool names(const QString &ssid) const;

signals:
    /// A file came, went, or has something else in it.
    void changed();

private:
    void look();
    QStringList files() const;

    QString m_directory;
    QFileSystemWatcher m_watcher;
};

} // namespace simulator
