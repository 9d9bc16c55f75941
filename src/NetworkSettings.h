#pragma once

#include "Command.h"
#include "SettingsStore.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

#include <memory>

class ConnmanService;

/// What the daemon keeps about the device's networking across restarts, and what it sets up in the operating
/// system: the preferred Wi-Fi, the regulatory region, the Wi-Fi hardware address, the host name and
/// ConnMan's provisioning files. Failures are logged and give false or empty results; nothing is retried.
class NetworkSettings : public QObject
{
    Q_OBJECT

public:
    explicit NetworkSettings(QObject *parent = nullptr);
    ~NetworkSettings() override;

    /// The name of the network to rejoin whenever Wi-Fi comes up; empty when there is none.
    QString getPreferedWifi() const;
    /// Stores the service's name; services that are no Wi-Fi are ignored.
    void setPreferedWifi(const std::shared_ptr<ConnmanService> &service);
    /// Clears the preference if it is this service; services that are no Wi-Fi are ignored.
    void removePreferedWifi(const std::shared_ptr<ConnmanService> &service);

    /// The stored two-letter region; empty when there is none.
    QString getWifiRegion() const;
    /// Applies the region with "iw" and stores it; blocks while the command runs. Refused while the lock is
    /// on.
    bool setWifiRegion(const QString &region);
    bool getLockRegion() const;
    bool setLockRegion(bool locked);
    /// Applies the stored region in the background; initDone() tells the end. Without one, and instead of the
    /// world region "00", it is "US".
    void applyStoredWifiRegion();

    /// Whether "iw" knows any Wi-Fi hardware.
    bool getWlanSupported();
    /// Gives "wlan0" the address that belongs to the device's serial number. The interface is down when it
    /// fails.
    bool initMacAddress();
    /// The address for a serial number. Beyond the range in use (0 to 848575) it is one that "ip" refuses.
    static QString macAddress(int serialNumber);

    /// The content of the host-name file; empty when it cannot be opened.
    QString getHostName();
    /// Replaces the content of the host-name file; the running system keeps its name.
    bool setHostName(const QString &name);

    /// Writes the provisioning file that lets ConnMan connect an enterprise network. A value that would break
    /// the file's line structure is refused. When it fails, what was there before still is.
    bool createWpaConfFile(const QString &fileName, const QString &name, const QString &eap,
                           const QString &phase2);
    /// Whether a value can stand in a provisioning file: line breaks and other control characters cannot.
    static bool isProvisionable(const QString &value);
    void removeWpaConfFile(const QString &fileName);

signals:
    /// A region command has ended, or has been given up.
    void initDone();

public slots:
    void timeout();
    void finished(int exitCode, QProcess::ExitStatus status);

private:
    bool startRegionCommand(const QString &region);
    bool setInterfaceAddress(const QString &address);

    QTimer m_regionTimer;
    Command::Process m_regionProcess;
    QDeadlineTimer m_regionDeadline;
    SettingsStore m_mainSettings;
    SettingsStore m_regionSettings;
    bool m_regionGivenUp = false;
};
