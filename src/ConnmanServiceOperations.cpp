// The operations of ConnmanService: what it asks ConnMan to do.

#include "ConnmanService.h"

#include "ConnmanNames.h"
#include "ConnmanServiceLog.h"

#include <QCoreApplication>
#include <QDBusInterface>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
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

constexpr const char *Connect = "Connect";
constexpr const char *Disconnect = "Disconnect";
constexpr const char *Remove = "Remove";

const QLatin1String NameserversConfiguration("Nameservers.Configuration");
const QLatin1String AutoConnect("AutoConnect");

const QLatin1String NotConnectedError("net.connman.Error.NotConnected");

QVariantMap onlyMethod(QLatin1String word)
{
    return {{Method, QString(word)}};
}

/// Whether a failed "Disconnect" nevertheless leaves the service disconnected: it was, or it is gone.
bool isDisconnectedAnyway(const QDBusError &error)
{
    return error.name() == NotConnectedError || error.type() == QDBusError::UnknownObject;
}

} // namespace

bool ConnmanService::dbusSetProperty(const QString &name, const QVariant &value)
{
    qCDebug(logConnmanServiceProperties) << name << "->" << value;
    const QDBusMessage reply = m_interface->call(QLatin1String(ConnmanNames::SetProperty), name,
                                                 QVariant::fromValue(QDBusVariant(value)));
    const QDBusError error(reply);
    if (error.isValid() && error.type() != QDBusError::UnknownObject) {
        qCCritical(logConnmanServiceProperties) << "Setting property" << name << "failed:" << error.message();
    }
    dbusUpdateProperties();
    return !error.isValid();
}

bool ConnmanService::configure(Configuration configuration, const QHostAddress &address,
                               const QHostAddress &netmask, const QHostAddress &gateway)
{
    switch (configuration) {
    case Configuration::Off:
        return dbusSetProperty(Ipv4Configuration, onlyMethod(QLatin1String("off")));
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
    const bool methodSet = dbusSetProperty(Ipv4Configuration, onlyMethod(QLatin1String("dhcp")));
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
    return dbusSetProperty(Ipv4Configuration, QVariantMap{{Method, QStringLiteral("manual")},
                                                          {Address, address.toString()},
                                                          {Netmask, netmask.toString()},
                                                          {Gateway, gateway.toString()}});
}

bool ConnmanService::configureIpv6(bool enable)
{
    return dbusSetProperty(Ipv6Configuration, onlyMethod(QLatin1String(enable ? "auto" : "off")));
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
    const QDBusPendingCall call = m_interface->asyncCall(QLatin1String(Connect));
    // Replies arrive on Qt's own bus thread: only a watcher wakes this thread's event loop for one. Its
    // signal queues up behind what ConnMan sent before the answer, such as the agent's ReportError, which
    // must have been handled.
    const QDBusPendingCallWatcher watcher(call);
    bool answered = false;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, this, [&answered] { answered = true; });
    while (!answered) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
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

    QDBusPendingCall call = m_interface->asyncCall(QLatin1String(Disconnect));
    call.waitForFinished();

    // The address that was in use stays with the service, whether it could be disconnected or not.
    dbusSetProperty(Ipv4Configuration,
                    QVariantMap{{Method, QStringLiteral("manual")}, {Address, address}, {Gateway, gateway}});
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

    QDBusPendingCall call = m_interface->asyncCall(QLatin1String(Remove));
    call.waitForFinished();
    dbusUpdateProperties();
    if (!call.isError()) {
        return true;
    }
    logFailedCall(Remove, call.error());
    return false;
}

void ConnmanService::logFailedCall(const char *method, const QDBusError &error) const
{
    qCCritical(logConnmanService) << "Failed to asynchronously call" << method << "on" << m_path << ":"
                                  << error;
}
