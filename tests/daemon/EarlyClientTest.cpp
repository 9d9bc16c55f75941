#include "Scene.h"
#include "Suite.h"
#include "TestDevice.h"
#include <QTest>

using namespace test_support;

/// A client that waits for the daemon's bus name and asks at once.
class EarlyClientTest : public QObject
{
    Q_OBJECT
private slots:
    void seesConnmansServices_data();
    void seesConnmansServices();
};

void EarlyClientTest::seesConnmansServices_data()
{
    constexpr int Starts = 8; // of a race that must not be one
    QTest::addColumn<bool>("hasRadio");
    for (int start = 1; start <= Starts; ++start) {
        QTest::addRow("without radio, start %d", start) << false;
        QTest::addRow("with radio, start %d", start) << true;
    }
}

void EarlyClientTest::seesConnmansServices()
{
    QFETCH(bool, hasRadio);
    TestDevice device;
    device.daemon.sandbox().setSettings("region"_s, scene::regionSweden);
    device.simulator.addService(scene::home, {{"Name"_s, "Home"_s}, {"State"_s, "ready"_s}});
    if (!hasRadio) {
        device.removeRadio();
    }
    QVERIFY(device.daemon.start());
    QVERIFY(device.client.waitForName());
    QCOMPARE(device.client.call("activeNetworks").toStringList(), {"Home"_s});
    device.log().tolerate("default|critical|WLAN not supported on this board."_s);
}

static const Suite<EarlyClientTest> earlyClientTest;
#include "EarlyClientTest.moc"
