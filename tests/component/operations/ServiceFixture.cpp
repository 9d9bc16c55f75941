#include "ServiceFixture.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QLoggingCategory>
#include <QTest>

using test_support::Fault;
using test_support::FaultKind;

namespace {

const QString connmanName = QStringLiteral("net.connman");
const QString serviceInterface = QStringLiteral("net.connman.Service");

QVariantMap connectedByDhcp()
{
    return {{QStringLiteral("Name"), QStringLiteral("HomeNet")},
            {QStringLiteral("State"), QStringLiteral("ready")},
            {QStringLiteral("Favorite"), true},
            {QStringLiteral("IPv4"), QVariantMap{{QStringLiteral("Method"), QStringLiteral("dhcp")},
                                                 {QStringLiteral("Address"), QStringLiteral("10.0.0.7")},
                                                 {QStringLiteral("Netmask"), QStringLiteral("255.255.255.0")},
                                                 {QStringLiteral("Gateway"), QStringLiteral("10.0.0.1")}}}};
}

} // namespace

void ServiceFixture::initTestCase()
{
    QVERIFY(m_connman.isReady());
    QLoggingCategory::setFilterRules(QStringLiteral("ConnmanService.debug=true\n"
                                                    "ConnmanService.properties.debug=true"));
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
    return QStringLiteral("wifi_020000000001_686f6d65_managed_psk");
}

QString ServiceFixture::path()
{
    return QStringLiteral("/net/connman/service/") + identifier();
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
    return QStringLiteral("%1 %2.%3(%4)").arg(path(), serviceInterface, QLatin1String(member), arguments);
}

QString ServiceFixture::setProperty(const char *name, const char *value)
{
    return call("SetProperty", QStringLiteral("\"%1\", <%2>").arg(QLatin1String(name), QLatin1String(value)));
}

Fault ServiceFixture::fault(const char *member, const FaultKind &kind, uint count)
{
    return m_connman.injectFault(serviceInterface, QLatin1String(member), kind, path(), count);
}

FaultKind ServiceFixture::unknownObject()
{
    return FaultKind::error(QStringLiteral("org.freedesktop.DBus.Error.UnknownObject"),
                            QStringLiteral("Method \"x\" doesn't exist"));
}

FaultKind ServiceFixture::silence()
{
    return FaultKind::error(QStringLiteral("org.freedesktop.DBus.Error.NoReply"), QStringLiteral("Silence"));
}

FaultKind ServiceFixture::connmanError(const char *name, const char *message)
{
    return FaultKind::error(QStringLiteral("net.connman.Error.") + QLatin1String(name),
                            QLatin1String(message));
}

QStringList ServiceFixture::debugLines() const
{
    return m_log->lines(QStringLiteral("ConnmanService"), QtDebugMsg);
}

QStringList ServiceFixture::criticalLines() const
{
    QStringList lines;
    for (const test_support::LogMessage &message : m_log->messages()) {
        if (message.type == QtCriticalMsg) {
            lines.append(message.category + QStringLiteral(": ") + message.text);
        }
    }
    return lines;
}

QString ServiceFixture::serviceLine(const QString &text)
{
    return QStringLiteral("ConnmanService: ") + text;
}

QString ServiceFixture::propertiesLine(const QString &text)
{
    return QStringLiteral("ConnmanService.properties: ") + text;
}

QString ServiceFixture::failedCallLine(const char *member, const char *errorName, const char *message)
{
    return serviceLine(
        QStringLiteral("Failed to asynchronously call %1 on \"%2\" : QDBusError(\"%3\", \"%4\")")
            .arg(QLatin1String(member), path(), QLatin1String(errorName), QLatin1String(message)));
}
