#include "TestDevice.h"

namespace test_support {

namespace {
const QString loadingServices = QStringLiteral("/ net.connman.Manager.GetServices()");
const QString noRadioComplaint = QStringLiteral("default|critical|WLAN not supported on this board.");
} // namespace

bool LonelyDaemon::start(const QStringList &arguments)
{
    return daemon.start(arguments) && client.waitForName();
}

bool TestDevice::start(const QStringList &arguments)
{
    return daemon.start(arguments) && client.waitForName();
}

bool TestDevice::startAndAttach()
{
    if (!start() || !simulator.waitForCall(loadingServices)) {
        return false;
    }
    client.settle();
    return true;
}

void TestDevice::removeRadio()
{
    commands().script(QStringLiteral("iw list"), {});
}

bool TestDevice::startWithoutRadio()
{
    removeRadio();
    return startAndAttach() && log().takeProblem(noRadioComplaint);
}

} // namespace test_support
