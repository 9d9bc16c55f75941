#pragma once

#include "NetworkSettings.h"

#include <QDir>
#include <QVariant>

/// The files that the settings write, and what is to be in them.
namespace device_files {

const QString hostNameFile = QStringLiteral("/etc/hostname");
const QString connmanDirectory = QStringLiteral("/var/lib/connman");
const QString corpFile = connmanDirectory + QStringLiteral("/corp.config");
const QString storesDirectory = QStringLiteral("/etc/xdg/Tactora AB");
const QString regionFile = storesDirectory + QStringLiteral("/region.conf");
const QString regionStore = QStringLiteral("region");
const QString corp = QStringLiteral("corp");

/// Two values to tell apart, long enough for half of it to be seen.
inline QString longName(bool odd)
{
    return QStringLiteral("%1").arg(QString(), odd ? 60 : 50, QLatin1Char(odd ? 'o' : 'e'));
}

inline QByteArray provisioningText(bool odd)
{
    return QStringLiteral("[service_peap]\nType=wifi\nName=%1\nEAP=peap\nPhase2=MSCHAPV2")
        .arg(longName(odd))
        .toUtf8();
}

inline QByteArray lockText(bool odd)
{
    return QStringLiteral("[wifi]\nregionLocked=%1\n").arg(QVariant(odd).toString()).toUtf8();
}

inline bool writeEverything(NetworkSettings &settings, bool odd)
{
    settings.setLockRegion(odd);
    return settings.createWpaConfFile(corp, longName(odd), QStringLiteral("peap"),
                                      QStringLiteral("MSCHAPV2")) &&
           settings.setHostName(longName(odd));
}

inline QStringList entries(const QString &directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

} // namespace device_files
