#pragma once

#include <QMap>
#include <QSettings>
#include <QString>
#include <QVariant>

/// One of the daemon's settings stores: a file in the system scope, in QSettings' native format, that other
/// programs may read. Every change is written at once and for good; the file always is whole.
class SettingsStore
{
public:
    explicit SettingsStore(const QString &name);

    /// Invalid when there is none.
    QVariant value(const QString &key) const;
    /// Replaces the key and everything below it. A file that cannot be written is one critical line; the
    /// change counts all the same, and is written with the next one.
    void setValue(const QString &key, const QVariant &value);
    /// Removes the key and everything below it, likewise.
    void remove(const QString &key);

private:
    void change(const QString &key, const QVariant &value);
    bool write();
    bool writeChanges(const QString &fileName) const;

    QSettings m_settings;                ///< only ever read
    QMap<QString, QVariant> m_unwritten; ///< an invalid value stands for a removed key
};
