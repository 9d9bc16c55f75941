#include "EventWait.h"
#include "Kernel.h"
#include "RealSurroundings.h"
#include "Scene.h"
#include "Suite.h"
#include "Text.h"
#include "WebServer.h"

using namespace test_support;

/// What only a real interface and a real online check can show.
class RealLinkTest : public QObject
{
    Q_OBJECT
private slots:
    void hardwareAddressIsTheInterfacesOwn();
    void linkFoundOnlineLightsTheLedUnannounced();
};

void RealLinkTest::hardwareAddressIsTheInterfacesOwn()
{
    Scene scene;
    QVERIFY(scene.bringUp());
    QCOMPARE(scene.client.call("getHwAddress", WiredLink::interface()).toString().toLower(),
             kernel::hardwareAddress(WiredLink::interface()));
}

void RealLinkTest::linkFoundOnlineLightsTheLedUnannounced()
{
    Scene scene;
    auto &world = dynamic_cast<RealSurroundings &>(scene.world());
    const WebServer onlineCheckServer;
    world.startDhcpServer();
    world.plugCable();
    world.startConnmanWithOnlineCheck();
    QTRY_COMPARE_WITH_TIMEOUT(world.connmanProperties().value("State"_s).toString(), "online"_s,
                              eventTimeoutMs);
    QVERIFY(scene.startDaemon());
    QVERIFY(scene.waitForLed(LedPattern::on()));
    QCOMPARE(scene.listedService().value("State"_s).toString(), "online"_s);
    QCOMPARE(scene.speech().requests().size(), 0);
}

static const Suite<RealLinkTest> suite;

#include "RealLinkTest.moc"
