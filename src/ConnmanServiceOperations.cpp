// The operations of ConnmanService: what it asks ConnMan to do.

#include "ConnmanService.h"

#include "ConnmanNames.h"
#include "ConnmanServiceLog.h"
#include "Latin1.h"

#include <QDBusError>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>

#include <algorithm>
#include <iterator>

namespace {

using ConnmanNames::Address;
using ConnmanNames::Gateway;
using ConnmanNames::Ipv4Configuration;
using ConnmanNames::Ipv6Configuration;
using ConnmanNames::Method;
using ConnmanNames::Netmask;

constexpr QLatin1String Connect = latin1("Connect");
constexpr QLatin1String Disconnect = latin1("Disconnect");
constexpr QLatin1String Remove = latin1("Remove");

constexpr QLatin1String NameserversConfiguration = latin1("Nameservers.Configuration");
constexpr QLatin1String AutoConnect = latin1("AutoConnect");

QVariantMap onlyMethod(QLatin1String word)
{
    return {{Method, QString(word)}};
}

/// Whether a failed "Disconnect" nevertheless leaves the service disconnected: it was, or it is gone.
bool isDisconnectedAnyway(const QDBusError &error)
{
    return error.name() == ConnmanNames::NotConnectedError || error.type() == QDBusError::UnknownObject;
}

} // namespace

bool ConnmanService::dbusSetProperty(const QString &name, const QVariant &value)
{
    const QDBusError error = m_properties.set(name, value);
    dbusUpdateProperties();
    return !error.isValid();
}

bool ConnmanService::configure(Configuration configuration, const QHostAddress &address,
                               const QHostAddress &netmask, const QHostAddress &gateway)
{
    switch (configuration) {
    case Configuration::Off:
        return dbusSetProperty(Ipv4Configuration, onlyMethod(ConnmanNames::Off));
    case Configuration::Manual:
        return configureManual(address, netmask, gateway);
    case Configuration::Dhcp:
        return configureDhcp();
    }
    qCCritical(logConnmanService) << "Invalid configuration value:" << static_cast<int>(configuration);
    return false;
}

bool ConnmanService::configureDhcp()
{
    const bool methodSet = dbusSetProperty(Ipv4Configuration, onlyMethod(ConnmanNames::Dhcp));
    const bool nameserversCleared = dbusSetProperty(NameserversConfiguration, QStringList());
    return methodSet && nameserversCleared;
}

bool ConnmanService::configureManual(const QHostAddress &address, const QHostAddress &netmask,
                                     const QHostAddress &gateway)
{
    if (address.protocol() != netmask.protocol() || address.protocol() != gateway.protocol()) {
        qCCritical(logConnmanServiceProperties)
            << "Missmatched protocol types in configureManual()" << address.protocol()
            << "!=" << netmask.protocol() << "||" << address.protocol() << "!=" << gateway.protocol();
        return false;
    }
    if (address.protocol() != QAbstractSocket::IPv4Protocol) {
        qCCritical(logConnmanService) << "Unsupported protocol:" << address.protocol();
        return false;
    }
    return dbusSetProperty(Ipv4Configuration, QVariantMap{{Method, QString(ConnmanNames::Manual)},
                                                          {Address, address.toString()},
                                                          {Netmask, netmask.toString()},
                                                          {Gateway, gateway.toString()}});
}

bool ConnmanService::configureIpv6(bool enable)
{
    return dbusSetProperty(Ipv6Configuration, onlyMethod(enable ? ConnmanNames::Auto : ConnmanNames::Off));
}

bool ConnmanService::setNameservers(const QList<QHostAddress> &servers)
{
    QStringList texts;
    std::transform(servers.cbegin(), servers.cend(), std::back_inserter(texts),
                   [](const QHostAddress &server) { return server.toString(); });
    return dbusSetProperty(NameserversConfiguration, texts);
}

bool ConnmanService::setAutoConnect(bool enable)
{
    return dbusSetProperty(AutoConnect, enable);
}

bool ConnmanService::connect()
{
    const QDBusPendingCall call = m_remote.asyncCall(Connect);
    // The watcher's signal queues up behind what ConnMan sent before the answer, such as the agent's
    // ReportError, which must have been handled.
    const QDBusPendingCallWatcher watcher(call);
    QEventLoop untilAnswered;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &untilAnswered, &QEventLoop::quit);
    untilAnswered.exec();

    if (!watcher.isFinished()) {
        return false; // the application ends
    }
    if (!call.isError()) {
        return true;
    }
    const QDBusError error = call.error();
    if (error.type() == QDBusError::UnknownObject) {
        return false;
    }
    logFailedCall(Connect, error);
    if (error.type() == QDBusError::NoReply) {
        qCDebug(logConnmanService) << "Disconnecting service due to timeout.";
        disconnect();
    }
    return false;
}

bool ConnmanService::disconnect()
{
    const QString address = getIpv4ConfigurationValue(Address);
    const QString gateway = getIpv4ConfigurationValue(Gateway);

    QDBusPendingCall call = m_remote.asyncCall(Disconnect);
    call.waitForFinished();

    // The address that was in use stays with the service, whether it could be disconnected or not.
    dbusSetProperty(
        Ipv4Configuration,
        QVariantMap{{Method, QString(ConnmanNames::Manual)}, {Address, address}, {Gateway, gateway}});
    if (!dbusUpdateProperties()) {
        return false;
    }
    if (!call.isError() || isDisconnectedAnyway(call.error())) {
        return true;
    }
    logFailedCall(Disconnect, call.error());
    return false;
}

bool ConnmanService::remove()
{
    configureDhcp();

    QDBusPendingCall call = m_remote.asyncCall(Remove);
    call.waitForFinished();
    dbusUpdateProperties();
    if (!call.isError()) {
        return true;
    }
    logFailedCall(Remove, call.error());
    return false;
}

void ConnmanService::logFailedCall(QLatin1String method, const QDBusError &error) const
{
    qCCritical(logConnmanService) << "Failed to asynchronously call" << method.data() << "on" << path() << ":"
                                  << error;
}
