#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantMap>

class NetworkManager;

/// The daemon's interface on the system bus: "com.tactora.NetworkManager" at "/", documented for client
/// authors in data/com.tactora.NetworkManager.xml. It forwards each call to NetworkManager and relays its
/// signals; a failed operation answers false or empty, never with a D-Bus error.
///
/// The arguments have no names here, because names would appear in the introspection data.
class NetworkManagerDBus : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tactora.NetworkManager")

public:
    /// Claims object and bus name. Where the bus refuses, one critical line says so and the daemon runs on.
    explicit NetworkManagerDBus(NetworkManager *networkManager);

signals:
    void error(const QString &);
    void powerChanged(bool);
    void regionChanged(const QString &, bool);
    void networkRegistered(const QString &);
    void networkForgot(const QString &);
    void networkConnected(const QString &);
    void networkDisconnected(const QString &);

public slots:
    bool connect(const QString &);
    bool disconnect(const QString &);
    bool configure(const QString &, const QString &);
    bool configure(const QString &, const QString &, const QString &, const QString &, const QString &);
    bool configureIPv6(const QString &, const QString &);
    QString getHwAddress(const QString &);
    QString getAddress(const QString &);
    QString getNetmask(const QString &);
    QString getGateway(const QString &);
    QString getIPv6Address(const QString &);
    QString getPrefix(const QString &);
    QVariantMap getConfiguration(const QString &);
    QVariantMap getIPv6Configuration(const QString &);
    QStringList getNameservers(const QString &);
    bool setNameservers(const QString &, const QStringList &);
    QVariantMap networks();
    QStringList wpsNetworks();
    QStringList activeNetworks();
    bool setWifiPower(bool);
    bool getWifiPower();
    bool forgetWifi(const QString &);
    bool registerWifi(const QString &, const QString &);
    bool registerHiddenWifi(const QString &, const QString &, const QString &);
    bool registerWiFiWpa2Enterprise(const QString &, const QString &, const QString &, const QString &,
                                    const QString &);
    bool registerWifiWps(const QString &);
    bool registerWifiWps(const QString &, const QString &);
    bool checkWifiTechnology();
    bool checkBluetoothTechnology();
    QString getWifiRegion();
    bool setWifiRegion(const QString &);
    bool getLockRegion();
    bool setLockRegion(bool);
    QString getHostName();
    bool setHostName(const QString &);

private:
    NetworkManager *m_networkManager;
};
