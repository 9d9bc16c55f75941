// The operations of NetworkSettings on the operating system: Wi-Fi hardware and its address, host name,
// provisioning files.

#include "NetworkSettings.h"

#include "Command.h"
#include "dbus/SystemInfo.h"
#include "FileReplacement.h"
#include "Latin1.h"
#include "NetworkInterfaces.h"
#include "NetworkSettingsLog.h"

#include <libtactora/Singleton.h>

#include <QDBusConnection>
#include <QDebug>
#include <QFile>

#include <algorithm>

namespace {

constexpr QLatin1String Ip = latin1("ip");
constexpr QLatin1String HostNameFile = latin1("/etc/hostname");

/// How soon the end of the bus, with which the daemon ends, is noticed in a wait without a limit.
constexpr int BusPollMs = 250;

constexpr QLatin1String MacPrefix = latin1("02a7c40");
constexpr qint64 SerialNumberOffset = 200000;

QStringList setLink(const QStringList &change)
{
    return QStringList{QStringLiteral("link"), QStringLiteral("set"), QStringLiteral("dev"),
                       NetworkInterfaces::Wifi} +
           change;
}

/// Empty for a name that would lead out of ConnMan's directory.
QString provisioningFile(const QString &fileName)
{
    if (fileName.contains(QLatin1Char('/'))) {
        return {};
    }
    return QStringLiteral("/var/lib/connman/%1.config").arg(fileName);
}

/// A value as GLib's key files have it: ConnMan would skip leading blanks, and take a backslash for the
/// beginning of something else.
QString keyFileValue(QString value)
{
    int blanks = 0;
    while (value.startsWith(QLatin1Char(' '))) {
        value.remove(0, 1);
        ++blanks;
    }
    value.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    return QStringLiteral("\\s").repeated(blanks) + value;
}

QByteArray provisioningText(const QString &name, const QString &eap, const QString &phase2)
{
    // The section's name is the same for every method, and the last line deliberately has no end.
    return QStringLiteral("[service_peap]\nType=wifi\nName=%1\nEAP=%2\nPhase2=%3")
        .arg(keyFileValue(name), keyFileValue(eap), keyFileValue(phase2))
        .toUtf8();
}

/// Whether `value` keeps to one line of the provisioning file; the complaint names the field.
bool isOneLine(const char *field, const QString &value)
{
    if (NetworkSettings::isProvisionable(value)) {
        return true;
    }
    qCCritical(logNetworkSettings) << "Control character in" << field << "of configuration file!";
    return false;
}

/// Whether writing worked, that is, there is no reason for a failure; else the reason is logged.
bool isWritten(const QString &path, const QString &failure)
{
    if (failure.isNull()) {
        return true;
    }
    qCCritical(logNetworkSettings) << "Unable to write file" << path << failure;
    return false;
}

} // namespace

bool NetworkSettings::getWlanSupported()
{
    const Command::ProcessPointer iw =
        Command::start(QStringLiteral("iw"), {QStringLiteral("list")}, QProcess::MergedChannels);
    if (Command::endsNormally(*iw) && !iw->readAll().isEmpty()) {
        return true;
    }
    qCritical() << "WLAN not supported on this board.";
    return false;
}

bool NetworkSettings::initMacAddress()
{
    if (!Command::run(Ip, setLink({QStringLiteral("down")}))) {
        qCritical() << "Failed to set interface down.";
        return false;
    }
    const int serialNumber = libtactora::Singleton<detail::SystemInfo>::instance()->serialNumber();
    if (!setInterfaceAddress(macAddress(serialNumber))) {
        return false;
    }
    if (!Command::run(Ip, setLink({QStringLiteral("up")}))) {
        qCritical() << "Failed to set interface up.";
        return false;
    }
    return true;
}

bool NetworkSettings::setInterfaceAddress(const QString &address)
{
    constexpr int WithoutLimit = -1;
    const Command::ProcessPointer ip =
        Command::start(Ip, setLink({QStringLiteral("address"), address}), QProcess::MergedChannels);
    ip->waitForStarted(WithoutLimit);
    QByteArray output;
    while (ip->state() != QProcess::NotRunning) {
        if (!QDBusConnection::systemBus().isConnected()) {
            return false;
        }
        ip->waitForReadyRead(BusPollMs);
        output += ip->readAll();
    }
    if (Command::endsNormally(*ip)) {
        return true;
    }
    qCritical() << "Failed to set interface address:" << QString::fromUtf8(output);
    return false;
}

QString NetworkSettings::macAddress(int serialNumber)
{
    constexpr int Hexadecimal = 16;
    constexpr int DigitsPerPiece = 2;
    // 32 bits, as the serial number has; 64 in between, so that the largest cannot overflow.
    const auto suffix = static_cast<quint32>(serialNumber + SerialNumberOffset);
    const QString digits = MacPrefix + QString::number(suffix, Hexadecimal);
    QStringList pieces;
    for (int position = 0; position < digits.size(); position += DigitsPerPiece) {
        pieces.append(digits.mid(position, DigitsPerPiece));
    }
    return pieces.join(QLatin1Char(':'));
}

QString NetworkSettings::getHostName()
{
    QFile file(HostNameFile);
    // Deliberately for writing too: a read-only file is a failure here already.
    if (!file.open(QIODevice::ReadWrite)) {
        qCCritical(logNetworkSettings) << "Failed to open hostname file for reading!";
        return {};
    }
    return QString::fromUtf8(file.readAll()).simplified();
}

bool NetworkSettings::setHostName(const QString &name)
{
    const QByteArray content = name.toUtf8();
    FileReplacement replacement(HostNameFile);
    const bool isPrepared = replacement.prepare();
    if (isPrepared && replacement.write(content) && replacement.commit()) {
        return true;
    }
    // It may be a mount point, or the only writable file of its directory.
    QFile file(HostNameFile);
    if (file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly)) {
        return isWritten(file.fileName(), overwrite(file, content));
    }
    if (isPrepared && !file.exists()) {
        return isWritten(file.fileName(), replacement.errorString());
    }
    qCCritical(logNetworkSettings) << "Failed to open hostname file for writing!";
    return false;
}

bool NetworkSettings::isProvisionable(const QString &value)
{
    return std::none_of(value.cbegin(), value.cend(),
                        [](QChar character) { return character.category() == QChar::Other_Control; });
}

bool NetworkSettings::createWpaConfFile(const QString &fileName, const QString &name, const QString &eap,
                                        const QString &phase2)
{
    if (!isOneLine("Name", name) || !isOneLine("EAP", eap) || !isOneLine("Phase2", phase2)) {
        return false;
    }
    const QString path = provisioningFile(fileName);
    FileReplacement file(path);
    if (path.isEmpty() || !file.prepare()) {
        qCCritical(logNetworkSettings) << "Failed to open configuration file for writing!";
        return false;
    }
    const bool isReplaced = file.write(provisioningText(name, eap, phase2)) && file.commit();
    return isWritten(path, isReplaced ? QString() : file.errorString());
}

void NetworkSettings::removeWpaConfFile(const QString &fileName)
{
    const QString path = provisioningFile(fileName);
    if (!path.isEmpty()) {
        QFile::remove(path);
    }
}
