#include "EventWait.h"
#include "Scene.h"
#include "Suite.h"
#include "Text.h"

using namespace test_support;

/// A network whose DHCP server never answers. ConnMan asks for 30 s and then probes link-local addresses for
/// another 10 s: the slowest of its ways, apart from the others so that it can run beside them.
class NoLeaseTest : public QObject
{
    Q_OBJECT
private slots:
    void linkLocalAddressIsReportedButNeverSpoken();
};

namespace {

constexpr int noAddressSentence = 8;
constexpr int linkLocalMs = 41000;
// The daemon looks for a better address every 2 s, 16 times.
constexpr int noAddressMs = 34000;

} // namespace

void NoLeaseTest::linkLocalAddressIsReportedButNeverSpoken()
{
    Scene scene;
    scene.surroundings.plugCable();
    scene.surroundings.startConnman();
    QVERIFY(scene.startDaemon());
    QVERIFY(scene.waitForLed(LedPattern::blink(1000)));

    QTRY_COMPARE_WITH_TIMEOUT(scene.surroundings.addresses().size(), 1, linkLocalMs + eventTimeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(scene.listedService().value("State"_s).toString(), "ready"_s, eventTimeoutMs);
    const QString address = scene.client.call("getAddress", scene.surroundings.service()).toString();
    QVERIFY2(address.startsWith("169.254."_s), qPrintable(address));
    QCOMPARE(scene.surroundings.addresses(), QStringList(address + "/16"_s));

    QVERIFY(waitUntil([&] { return scene.speech().count(noAddressSentence) == 1; },
                      noAddressMs + eventTimeoutMs));
    QCOMPARE(scene.speech().count(ethernetAddressSentence), 0);
    QVERIFY(scene.waitForLed(LedPattern::blink(500)));
    QVERIFY(scene.waitForLed(LedPattern::off()));
}

static const Suite<NoLeaseTest> noLeaseTest;

#include "NoLeaseTest.moc"
