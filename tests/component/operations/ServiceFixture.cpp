#include "ServiceFixture.h"
#include "Text.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QLoggingCategory>
#include <QTest>

using test_support::Fault;
using test_support::FaultKind;

namespace {

const QString connmanName = "net.connman"_s;
const QString serviceInterface = "net.connman.Service"_s;

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

void ServiceFixture::initTestCase()
{
    QVERIFY(m_connman.isReady());
    QLoggingCategory::setFilterRules("ConnmanService.debug=true\n"
                                     "ConnmanService.properties.debug=true"_s);
}

void ServiceFixture::init()
{
    m_log = std::make_unique<test_support::LogCapture>();
    m_connman.addService(identifier(), connectedByDhcp());
    makeProxy();
    m_connman.clearCalls();
    m_log->clear();
}

void ServiceFixture::cleanup()
{
    m_service.reset();
    m_connman.clearFaults();
    m_connman.setPresent(connmanName, true);
    for (const QString &known : m_connman.services()) {
        m_connman.removeService(known);
    }
    m_log.reset();
}

QString ServiceFixture::identifier()
{
    return "wifi_020000000001_686f6d65_managed_psk"_s;
}

QString ServiceFixture::path()
{
    return "/net/connman/service/"_s + identifier();
}

void ServiceFixture::makeProxy()
{
    m_service =
        std::make_unique<ConnmanService>(QDBusConnection::systemBus(), QDBusObjectPath(path()), nullptr);
    m_service->serviceChanged();
    m_connman.clearCalls();
}

void ServiceFixture::removeServiceUnnoticed()
{
    m_connman.removeService(identifier());
    m_connman.clearCalls();
}

QString ServiceFixture::call(const char *member, const QString &arguments)
{
    return "%1 %2.%3(%4)"_s.arg(path(), serviceInterface, QLatin1String(member), arguments);
}

QString ServiceFixture::setProperty(const char *name, const char *value)
{
    return call("SetProperty", "\"%1\", <%2>"_s.arg(QLatin1String(name), QLatin1String(value)));
}

Fault ServiceFixture::fault(const char *member, const FaultKind &kind, uint count)
{
    return m_connman.injectFault(serviceInterface, QLatin1String(member), kind, path(), count);
}

FaultKind ServiceFixture::unknownObject()
{
    return FaultKind::error("org.freedesktop.DBus.Error.UnknownObject"_s, "Method \"x\" doesn't exist"_s);
}

FaultKind ServiceFixture::silence()
{
    return FaultKind::error("org.freedesktop.DBus.Error.NoReply"_s, "Silence"_s);
}

FaultKind ServiceFixture::connmanError(const char *name, const char *message)
{
    return FaultKind::error("net.connman.Error."_s + QLatin1String(name), QLatin1String(message));
}

QStringList ServiceFixture::debugLines() const
{
    return m_log->lines("ConnmanService"_s, QtDebugMsg);
}

QStringList ServiceFixture::criticalLines() const
{
    QStringList lines;
    for (const test_support::LogMessage &message : m_log->messages()) {
        if (message.type == QtCriticalMsg) {
            lines.append(message.category + ": "_s + message.text);
        }
    }
    return lines;
}

QString ServiceFixture::serviceLine(const QString &text)
{
    return "ConnmanService: "_s + text;
}

QString ServiceFixture::propertiesLine(const QString &text)
{
    return "ConnmanService.properties: "_s + text;
}

QString ServiceFixture::failedCallLine(const char *member, const char *errorName, const char *message)
{
    return serviceLine("Failed to asynchronously call %1 on \"%2\" : QDBusError(\"%3\", \"%4\")"_s.arg(
        QLatin1String(member), path(), QLatin1String(errorName), QLatin1String(message)));
}
