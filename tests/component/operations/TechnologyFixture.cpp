#include "TechnologyFixture.h"

#include <QDBusConnection>
#include <QLoggingCategory>
#include <QTest>

using test_support::Fault;
using test_support::FaultKind;

namespace {

const QString category = QStringLiteral("ConnmanTechnology");
const QString technologyInterface = QStringLiteral("net.connman.Technology");

} // namespace

void TechnologyFixture::initTestCase()
{
    QVERIFY(m_connman.isReady());
    QLoggingCategory::setFilterRules(QStringLiteral("ConnmanTechnology.debug=true\nUtils.warning=true"));
}

void TechnologyFixture::init()
{
    m_log = std::make_unique<test_support::LogCapture>();
    m_connman.addTechnology(name(), {{QStringLiteral("Name"), QStringLiteral("WiFi")},
                                     {QStringLiteral("Type"), name()},
                                     {QStringLiteral("Powered"), true},
                                     {QStringLiteral("Connected"), true},
                                     {QStringLiteral("Tethering"), true}});
    makeProxy();
    m_connman.clearCalls();
    m_log->clear();
}

void TechnologyFixture::cleanup()
{
    m_technology.reset();
    m_connman.clearFaults();
    m_connman.setPresent(QStringLiteral("net.connman"), true);
    m_log.reset();
}

QString TechnologyFixture::name()
{
    return QStringLiteral("wifi");
}

QString TechnologyFixture::path()
{
    return QStringLiteral("/net/connman/technology/wifi");
}

void TechnologyFixture::makeProxy()
{
    m_technology = std::make_unique<ConnmanTechnology>(QDBusConnection::systemBus(), name(), nullptr);
}

QString TechnologyFixture::call(const char *member, const char *arguments)
{
    return QStringLiteral("%1 %2.%3(%4)")
        .arg(path(), technologyInterface, QLatin1String(member), QLatin1String(arguments));
}

Fault TechnologyFixture::fault(const char *member, const FaultKind &kind)
{
    return m_connman.injectFault(technologyInterface, QLatin1String(member), kind, path());
}

QStringList TechnologyFixture::debugLines() const
{
    return m_log->lines(category, QtDebugMsg);
}

QStringList TechnologyFixture::criticalLines() const
{
    return m_log->lines(category, QtCriticalMsg);
}
