#include "ServiceFixture.h"

#include "ConnmanNames.h"

#include <QDBusObjectPath>

using namespace test_support;

namespace {

QVariantMap connectedByDhcp()
{
    return {{"Name"_s, "HomeNet"_s},
            {"State"_s, "ready"_s},
            {"Favorite"_s, true},
            {"IPv4"_s, QVariantMap{{"Method"_s, "dhcp"_s},
                                   {"Address"_s, "10.0.0.7"_s},
                                   {"Netmask"_s, "255.255.255.0"_s},
                                   {"Gateway"_s, "10.0.0.1"_s}}}};
}

} // namespace

void ServiceFixture::init()
{
    ConnmanFixture::init();
    addService(identifier(), connectedByDhcp());
    makeProxy();
    log().clear();
}

void ServiceFixture::cleanup()
{
    m_service.reset();
    ConnmanFixture::cleanup();
}

QString ServiceFixture::identifier()
{
    return "wifi_020000000001_686f6d65_managed_psk"_s;
}

void ServiceFixture::makeProxy()
{
    m_service = std::make_unique<ConnmanService>(connection(), QDBusObjectPath(path()), nullptr);
    m_service->serviceChanged();
    connman().clearCalls();
}

void ServiceFixture::removeServiceUnnoticed()
{
    connman().removeService(identifier());
    connman().clearCalls();
}

QString ServiceFixture::call(const char *member, const QString &arguments)
{
    return callLine(path(), ConnmanNames::ServiceInterface, QLatin1String(member), arguments);
}

QString ServiceFixture::setProperty(const char *name, const char *value)
{
    return call("SetProperty", "\"%1\", <%2>"_s.arg(QLatin1String(name), QLatin1String(value)));
}

Fault ServiceFixture::fault(const char *member, const FaultKind &kind, uint count)
{
    return connman().injectFault(ConnmanNames::ServiceInterface, QLatin1String(member), kind, path(), count);
}

FaultKind ServiceFixture::silence()
{
    return FaultKind::error("org.freedesktop.DBus.Error.NoReply"_s, "Silence"_s);
}

FaultKind ServiceFixture::connmanError(const char *name, const char *message)
{
    return FaultKind::error("net.connman.Error."_s + QLatin1String(name), QLatin1String(message));
}

QString ServiceFixture::serviceLine(const QString &text)
{
    return critical("ConnmanService"_s, text);
}

QString ServiceFixture::propertiesLine(const QString &text)
{
    return critical("ConnmanService.properties"_s, text);
}

QString ServiceFixture::failedCallLine(const char *member, const char *errorName, const char *message)
{
    return serviceLine("Failed to asynchronously call %1 on \"%2\" : QDBusError(\"%3\", \"%4\")"_s.arg(
        QLatin1String(member), path(), QLatin1String(errorName), QLatin1String(message)));
}
