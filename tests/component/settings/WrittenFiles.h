#pragma once

#include "DeviceFiles.h"
#include "NetworkSettings.h"
#include "Text.h"

#include <QDir>
#include <QVariant>

/// The files that the settings write, and what is to be in them.
namespace written_files {

inline const QString &hostNameFile = test_support::DeviceFiles::hostNameFile;
inline const QString &connmanDirectory = test_support::DeviceFiles::connmanDirectory;
const QString corpFile = connmanDirectory + "/corp.config"_s;
inline const QString &storesDirectory = test_support::DeviceFiles::storesDirectory;
const QString regionStore = "region"_s;
const QString regionFile = test_support::DeviceFiles::settingsFile(regionStore);
const QString corp = "corp"_s;

/// Two values to tell apart, long enough for half of it to be seen.
inline QString longName(bool odd)
{
    return "%1"_s.arg(QString(), odd ? 60 : 50, QLatin1Char(odd ? 'o' : 'e'));
}

inline QByteArray provisioningText(bool odd)
{
    return "[service_peap]\nType=wifi\nName=%1\nEAP=peap\nPhase2=MSCHAPV2"_s.arg(longName(odd)).toUtf8();
}

inline QByteArray lockText(bool odd)
{
    return "[wifi]\nregionLocked=%1\n"_s.arg(QVariant(odd).toString()).toUtf8();
}

inline bool writeEverything(NetworkSettings &settings, bool odd)
{
    settings.setLockRegion(odd);
    return settings.createWpaConfFile(corp, longName(odd), "peap"_s, "MSCHAPV2"_s) &&
           settings.setHostName(longName(odd));
}

inline QStringList entries(const QString &directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

} // namespace written_files
