#include "TechnologyFixture.h"

#include "ConnmanNames.h"

using namespace test_support;

void TechnologyFixture::init()
{
    ConnmanFixture::init();
    connman().addTechnology(name(), {{"Name"_s, "WiFi"_s},
                                     {"Type"_s, name()},
                                     {"Powered"_s, true},
                                     {"Connected"_s, true},
                                     {"Tethering"_s, true}});
    makeProxy();
    forget();
}

void TechnologyFixture::cleanup()
{
    m_technology.reset();
    ConnmanFixture::cleanup();
}

void TechnologyFixture::makeProxy()
{
    m_technology = std::make_unique<ConnmanTechnology>(connection(), name(), nullptr);
}

QString TechnologyFixture::call(const char *member, const char *arguments)
{
    return callLine(path(), ConnmanNames::TechnologyInterface, QLatin1String(member),
                    QLatin1String(arguments));
}

Fault TechnologyFixture::fault(const char *member, const FaultKind &kind)
{
    return connman().injectFault(ConnmanNames::TechnologyInterface, QLatin1String(member), kind, path());
}
