#include "Air.h"

#include "AccessPoints.h"
#include "Bench.h"
#include "Kernel.h"
#include "Text.h"

namespace {

test_support::SimulatorClient &simulator()
{
    return Bench::instance().simulator;
}

QString ssidOf(const QString &accessPoint)
{
    return accessPoints().value(accessPoint).value("ssid"_s).toString();
}

} // namespace

bool Air::restore()
{
    if (!m_touched) {
        return true;
    }
    for (const QVariantMap &options : accessPoints()) {
        simulator().addNetwork(options);
    }
    const bool served = serveAddresses(true);
    m_touched = false;
    return served;
}

bool Air::switchOn(const QString &accessPoint)
{
    m_touched = true;
    simulator().setInReach(ssidOf(accessPoint), true);
    return true;
}

bool Air::switchOff(const QString &accessPoint)
{
    m_touched = true;
    simulator().setInReach(ssidOf(accessPoint), false);
    return true;
}

bool Air::serveAddresses(bool on)
{
    if (on != m_serving) {
        m_touched = true;
        m_serving = on;
        simulator().setAddressesServed(on);
    }
    return true;
}

bool Air::expectPin(const QString &accessPoint, const QString &pin)
{
    m_touched = true;
    QVariantMap options = accessPoints().value(accessPoint);
    options.insert("pin"_s, pin);
    simulator().addNetwork(options);
    return true;
}

bool Air::pressButton(const QString &accessPoint)
{
    m_touched = true;
    QVariantMap options = accessPoints().value(accessPoint);
    options.remove("pin"_s);
    simulator().addNetwork(options);
    return true;
}

bool Air::reaches(const QString &address)
{
    return Kernel::addresses("wlan0"_s).contains(address);
}
