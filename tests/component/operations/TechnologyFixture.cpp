#include "TechnologyFixture.h"
#include "Text.h"

#include <QDBusConnection>
#include <QLoggingCategory>
#include <QTest>

using test_support::Fault;
using test_support::FaultKind;

namespace {

const QString category = "ConnmanTechnology"_s;
const QString technologyInterface = "net.connman.Technology"_s;

} // namespace

void TechnologyFixture::initTestCase()
{
    QVERIFY(m_connman.isReady());
    QLoggingCategory::setFilterRules("ConnmanTechnology.debug=true\nUtils.warning=true"_s);
}

void TechnologyFixture::init()
{
    m_log = std::make_unique<test_support::LogCapture>();
    m_connman.addTechnology(name(), {{"Name"_s, "WiFi"_s},
                                     {"Type"_s, name()},
                                     {"Powered"_s, true},
                                     {"Connected"_s, true},
                                     {"Tethering"_s, true}});
    makeProxy();
    m_connman.clearCalls();
    m_log->clear();
}

void TechnologyFixture::cleanup()
{
    m_technology.reset();
    m_connman.clearFaults();
    m_connman.setPresent("net.connman"_s, true);
    m_log.reset();
}

QString TechnologyFixture::name()
{
    return "wifi"_s;
}

QString TechnologyFixture::path()
{
    return "/net/connman/technology/wifi"_s;
}

void TechnologyFixture::makeProxy()
{
    m_technology = std::make_unique<ConnmanTechnology>(QDBusConnection::systemBus(), name(), nullptr);
}

QString TechnologyFixture::call(const char *member, const char *arguments)
{
    return "%1 %2.%3(%4)"_s.arg(path(), technologyInterface, QLatin1String(member), QLatin1String(arguments));
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
